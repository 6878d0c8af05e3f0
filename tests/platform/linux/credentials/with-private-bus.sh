#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-private-bus.sh CONFIGURATION COMMAND...: runs the command with its own session bus and home; the bus reads the
# configuration file, or the system's for "default".
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
configuration=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work" XDG_RUNTIME_DIR="$work/run" XDG_DATA_HOME="$work/data" XDG_CONFIG_HOME="$work/config" \
    XDG_CACHE_HOME="$work/cache"
mkdir -p "$XDG_RUNTIME_DIR" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME"
chmod 700 "$XDG_RUNTIME_DIR"
unset DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
option=()
[ "$configuration" = default ] || option=(--config-file="$configuration")
dbus-run-session "${option[@]}" -- "$@" 2> >(grep -v 'Failed to set fd limit' >&2)
