#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-mounts.sh [--in-memory] COMMAND...: runs a test that mounts small file systems or changes the owner of files, in a
# mount namespace that ends with it. A normal user gets the right in a user namespace, in which it is root and has other
# users.
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
    echo "with-mounts.sh: this user cannot mount file systems, not even in a user namespace. Run the test as root with the" \
        "right to mount (CAP_SYS_ADMIN), or allow user namespaces: sysctl user.max_user_namespaces and" \
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
