#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# with-fprintd.sh COMMAND...: runs the command with a real fprintd and a virtual fingerprint reader, on a private system bus
# whose policy service allows everything. Everything ends with the command.
#
# The command gets DBUS_SYSTEM_BUS_ADDRESS, and FP_VIRTUAL_DEVICE: the reader's socket, which exists only while a client has
# claimed the reader. One connection sends one event: "SCAN finger", "RETRY code", "ERROR code", "UNPLUG". BUS_ONLY=1 omits
# fprintd, for a command that starts it itself.
set -u
export PATH=/usr/bin:/bin:/usr/sbin:/sbin
support=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
started=()

finish() {
    # In reverse order of their start. A stopped process handles a signal only after SIGCONT.
    for ((i = ${#started[@]} - 1; i >= 0; i--)); do
        kill "${started[i]}" 2>/dev/null
        kill -CONT "${started[i]}" 2>/dev/null
        wait "${started[i]}" 2>/dev/null
    done
    rm -rf "$work"
}
trap finish EXIT
trap 'exit 143' TERM INT HUP

fail() { # WHAT LOG
    echo "with-fprintd.sh: $1:" >&2
    cat "$2" >&2
    exit 99
}

export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$work/bus"
exec 8>"$work/address"
dbus-daemon --config-file="$support/system-bus.conf" --address="$DBUS_SYSTEM_BUS_ADDRESS" --nofork --print-address=8 \
    2>"$work/bus.log" &
bus=$!
started+=("$bus")
until [ -s "$work/address" ]; do
    kill -0 "$bus" 2>/dev/null || fail "the bus did not start" "$work/bus.log"
    sleep 0.01
done
exec 8>&-

/usr/bin/python3 -m dbusmock --system --template polkitd >"$work/polkit.log" 2>&1 &
started+=($!)
gdbus wait --system --timeout 20 org.freedesktop.PolicyKit1 || fail "the policy service did not start" "$work/polkit.log"
gdbus call --system -d org.freedesktop.PolicyKit1 -o /org/freedesktop/PolicyKit1/Authority \
    -m org.freedesktop.DBus.Mock.AllowUnknown true >/dev/null || fail "the policy service refused" "$work/polkit.log"

# Only the virtual reader is used, also on a machine with a real one.
export FP_VIRTUAL_DEVICE="$work/reader" FP_DRIVERS_ALLOWLIST=virtual_device STATE_DIRECTORY="$work/state"
mkdir "$STATE_DIRECTORY"
if [ -z "${BUS_ONLY:-}" ]; then
    /usr/libexec/fprintd --no-timeout >"$work/fprintd.log" 2>&1 &
    started+=($!)
    gdbus wait --system --timeout 20 net.reactivated.Fprint || fail "fprintd did not start" "$work/fprintd.log"
fi

"$@" &
command=$!
started+=("$command")
wait "$command"
exit $?
