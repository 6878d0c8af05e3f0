#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# in-session.sh COMMAND...: runs COMMAND in its own session, with a virtual display, a session bus and an unlocked keyring.
# SYSTEM_BUS=1 adds a system bus with nothing on it, FINGERPRINTS=1 one with a fingerprint reader. The caller's session is not touched, and nothing is left running.
set -euo pipefail
support=$(cd "$(dirname "${BASH_SOURCE[0]}")/../support" && pwd)

command=("$support/with-display.sh" "$support/with-keyring.sh")
[ -z "${SYSTEM_BUS:-}" ] || command=("$support/with-buses.sh" "${command[@]}")
[ -z "${FINGERPRINTS:-}" ] || command=("$support/with-fprintd.sh" "${command[@]}")

# No byte code next to the sources, and Debian's own Python, which has the bindings.
export PYTHONDONTWRITEBYTECODE=1 PATH=/usr/sbin:/usr/bin:/sbin:/bin
# The messages of the session's daemons at their start are omitted.
noise='^dbus-daemon\[|^SpiRegistry daemon|^Openbox-Message'
exec "${command[@]}" "$@" > >(exec grep --line-buffered -vE "$noise") 2> >(exec grep --line-buffered -vE "$noise" >&2)
