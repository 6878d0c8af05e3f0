#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-buses.sh COMMAND...: runs the command with a system bus and a session bus of its own, with nothing on them and no
# services to start. Everything ends with the command.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
support=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$work/bus"
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_SESSION_ID
dbus-daemon --config-file="$support/system-bus.conf" --address="$DBUS_SYSTEM_BUS_ADDRESS" --nofork 2>"$work/bus.log" &
bus=$!
finish() {
    kill "$bus" 2>/dev/null
    wait "$bus" 2>/dev/null
    rm -rf "$work"
}
trap finish EXIT
trap 'exit 143' TERM INT HUP
until [ -S "$work/bus" ]; do
    kill -0 "$bus" 2>/dev/null || { echo "with-buses.sh: the bus did not start:" >&2; cat "$work/bus.log" >&2; exit 99; }
    sleep 0.01
done
dbus-run-session --config-file="$support/session-bus.conf" -- "$@"
