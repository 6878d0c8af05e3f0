#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-keyring.sh COMMAND...: runs the command with a real, unlocked gnome-keyring-daemon, whose entries are in a temporary
# home, and with its own session bus, or the existing one if KEEP_SESSION_BUS is set. Everything ends with the command.
#
# KEYRING_LOCKED=1 starts the keyring locked; KEYRING_HOME stores the entries in a folder that is kept.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
if [ -z "${WITH_KEYRING_INNER:-}${KEEP_SESSION_BUS:-}" ]; then
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
    export HOME="$work" XDG_RUNTIME_DIR="$work/run" XDG_DATA_HOME="${KEYRING_HOME:-$work/data}" \
        XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache"
    mkdir -p "$XDG_RUNTIME_DIR" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
    chmod 700 "$XDG_RUNTIME_DIR"
    WITH_KEYRING_INNER=1 dbus-run-session -- "$0" "$@" 2> >(grep -v 'Failed to set fd limit' >&2)
    exit $?
fi

keyring=
stop_keyring() {
    [ -n "$keyring" ] || return 0
    kill "$keyring" 2>/dev/null
    wait "$keyring" 2>/dev/null
    keyring=
}
trap stop_keyring EXIT # also when it does not start: a daemon that is left keeps the caller waiting
trap 'exit 143' TERM INT HUP

start_keyring() { # PASSWORD
    gnome-keyring-daemon --foreground --unlock --components=secrets >/dev/null 2>&1 < <(printf '%s' "$1") &
    keyring=$!
    gdbus wait --session --timeout 10 org.freedesktop.secrets ||
        { echo "with-keyring.sh: the keyring did not start" >&2; exit 99; }
}
start_keyring test-password
if [ -n "${KEYRING_LOCKED:-}" ]; then
    # A keyring created with one password and started with another is available but locked.
    stop_keyring
    start_keyring another-password
fi
"$@"
