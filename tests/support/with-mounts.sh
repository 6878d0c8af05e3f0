#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-mounts.sh [--in-memory] COMMAND...: runs a test that mounts small file systems of its own, or gives files to other
# users, in a name space of mounts that ends with it. A plain user gets the right in a name space of users, where it is root
# and has other users beside it.
#
# --in-memory keeps the temporary files in memory, for tests that open thousands of databases, each of which waits for the
# disk.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
memory=no
if [ "$1" = --in-memory ]; then
    memory=yes
    shift
fi
spaces=(--mount --propagation private)
[ "$(id -u)" -eq 0 ] || spaces+=(--user --map-root-user --map-auto)
unshare "${spaces[@]}" true 2>/dev/null || {
    echo "with-mounts.sh: this user may not mount, not even in a name space of its own. Run the test as root with the" \
        "right to mount (CAP_SYS_ADMIN), or allow name spaces to users: sysctl user.max_user_namespaces and" \
        "kernel.unprivileged_userns_clone, the package uidmap, and a line for $(id -un) in /etc/subuid and /etc/subgid." >&2
    exit 99
}
[ $memory = yes ] || exec unshare "${spaces[@]}" "$@"

work=$(mktemp -d)
trap 'rmdir "$work"' EXIT
unshare "${spaces[@]}" bash -c 'mount -t tmpfs -o mode=0700 tmpfs "$0" || exit 99; TMPDIR=$0 exec "$@"' "$work" "$@" &
command=$!
trap 'kill "$command" 2>/dev/null' TERM INT HUP
wait "$command"
result=$?
wait "$command" 2>/dev/null
exit "$result"
