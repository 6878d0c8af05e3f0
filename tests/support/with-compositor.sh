#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-compositor.sh kwin|mutter COMMAND...: runs the command in a Wayland session of its own without a screen, with KWin or
# Mutter as the compositor, and with its own buses and home. Everything ends with the command.
#
# The command gets WAYLAND_DISPLAY, and COMPOSITOR_PID. KWin lets it use org_kde_kwin_fake_input, and Mutter offers
# org.gnome.Mutter.RemoteDesktop on the session bus.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
if [ "${WITH_COMPOSITOR_BUS:-}" != own ]; then
    export WITH_COMPOSITOR_BUS=own WITH_COMPOSITOR_WORK=$(mktemp -d)
    mkdir -m 700 "$WITH_COMPOSITOR_WORK/run"
    mkdir "$WITH_COMPOSITOR_WORK/home"
    trap 'rm -rf "$WITH_COMPOSITOR_WORK"' EXIT
    export HOME="$WITH_COMPOSITOR_WORK/home" XDG_RUNTIME_DIR="$WITH_COMPOSITOR_WORK/run" GIO_USE_VFS=local \
        GSETTINGS_BACKEND=memory
    export XDG_CONFIG_HOME="$HOME/.config" XDG_DATA_HOME="$HOME/.local/share" XDG_CACHE_HOME="$HOME/.cache"
    unset QT_QPA_PLATFORM DISPLAY WAYLAND_DISPLAY WAYLAND_SOCKET DBUS_SESSION_BUS_ADDRESS XDG_CURRENT_DESKTOP XDG_SESSION_ID
    dbus-run-session -- "${BASH_SOURCE[0]}" "$@" 2> >(grep -v 'Failed to set fd limit' >&2)
    exit
fi

support=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$WITH_COMPOSITOR_WORK
started=()
finish() {
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        kill "${started[i]}" 2>/dev/null
        wait "${started[i]}" 2>/dev/null
    done
}
trap finish EXIT
trap 'exit 143' TERM INT HUP

fail() { # WHAT LOG
    echo "with-compositor.sh: $1:" >&2
    cat "$2" >&2
    exit 99
}

# Mutter does not start without a system bus; nothing is on this one.
export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$work/bus"
dbus-daemon --config-file="$support/system-bus.conf" --address="$DBUS_SYSTEM_BUS_ADDRESS" --nofork 2>"$work/bus.log" &
started+=($!)
until [ -S "$work/bus" ]; do
    kill -0 "${started[0]}" 2>/dev/null || fail "the bus did not start" "$work/bus.log"
    sleep 0.01
done

compositor=$1
shift
case $compositor in
kwin)
    # The installed program has a file capability, which a container may refuse to grant; a copy has none. It works under
    # its own name only.
    cp /usr/bin/kwin_wayland "$work/kwin_wayland"
    KWIN_COMPOSE=Q QT_QUICK_BACKEND=software KWIN_WAYLAND_NO_PERMISSION_CHECKS=1 "$work/kwin_wayland" --virtual \
        --no-lockscreen --no-global-shortcuts --socket wayland-test --width 800 --height 600 >"$work/compositor.log" 2>&1 &
    ;;
mutter)
    mutter --wayland --headless --no-x11 --virtual-monitor 800x600 --wayland-display wayland-test \
        >"$work/compositor.log" 2>&1 &
    ;;
*)
    echo "with-compositor.sh: no such compositor: $compositor" >&2
    exit 99
    ;;
esac
export COMPOSITOR_PID=$!
started+=("$COMPOSITOR_PID")
until [ -S "$XDG_RUNTIME_DIR/wayland-test" ]; do
    kill -0 "$COMPOSITOR_PID" 2>/dev/null || fail "the compositor did not start" "$work/compositor.log"
    sleep 0.02
done
if [ "$compositor" = mutter ]; then
    for name in org.gnome.Mutter.IdleMonitor org.gnome.Mutter.RemoteDesktop; do
        gdbus wait --session --timeout 20 "$name" || fail "Mutter does not offer $name" "$work/compositor.log"
    done
fi

export WAYLAND_DISPLAY=wayland-test QT_QPA_PLATFORM=wayland
"$@" &
command=$!
started+=("$command")
wait "$command"
exit $?
