#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-display.sh COMMAND...: runs the command with its own virtual display, session bus and home, and with a window
# manager, so that focus works as on a desktop. PORTAL=1 lets the desktop's portal start when it is called. Everything ends
# with the command.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
work=$(mktemp -d)
size=${DISPLAY_SIZE:-1600x1200x24}

exec 7>"$work/display"
Xvfb -displayfd 7 -screen 0 "$size" -nolisten tcp -noreset 2>"$work/xvfb.log" &
xvfb=$!
finish() {
    kill "$xvfb" 2>/dev/null
    wait "$xvfb" 2>/dev/null
    rm -rf "$work"
}
trap finish EXIT
until [ -s "$work/display" ]; do
    kill -0 "$xvfb" 2>/dev/null || { echo "with-display.sh: Xvfb did not start:" >&2; cat "$work/xvfb.log" >&2; exit 99; }
    sleep 0.02
done

export DISPLAY=":$(cat "$work/display")" QT_QPA_PLATFORM=xcb QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 GIO_USE_VFS=local
export HOME="$work/home" XDG_RUNTIME_DIR="$work/run" XDG_CONFIG_HOME="$work/home/.config" \
    XDG_DATA_HOME="$work/home/.local/share" XDG_CACHE_HOME="$work/home/.cache"
mkdir -p "$XDG_RUNTIME_DIR" "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME"
chmod 700 "$XDG_RUNTIME_DIR"
if [ -z "${PORTAL:-}" ]; then
    portal=org.freedesktop.portal.Desktop
    mkdir -p "$XDG_RUNTIME_DIR/dbus-1/services"
    printf '[D-BUS Service]\nName=%s\nExec=/bin/false\n' "$portal" >"$XDG_RUNTIME_DIR/dbus-1/services/$portal.service"
fi
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XDG_CURRENT_DESKTOP XDG_SESSION_ID

cat >"$work/inner" <<'INNER'
openbox --sm-disable >/dev/null 2>&1 &
manager=$!
for _ in $(seq 250); do
    xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
    sleep 0.02
done
"$@"
result=$?
kill "$manager" 2>/dev/null
exit "$result"
INNER
dbus-run-session -- bash "$work/inner" "$@" 2> >(grep -v 'Failed to set fd limit' >&2)
