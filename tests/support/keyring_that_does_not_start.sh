#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Checks that with-keyring.sh leaves nothing running when the keyring does not start: without a session bus, it cannot.
set -u
support=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export KEEP_SESSION_BUS=1 DBUS_SESSION_BUS_ADDRESS=unix:path=/does/not/exist HOME=$work XDG_RUNTIME_DIR=$work
# Whatever is left has inherited the pipe, and cat does not end before it.
timeout 60 bash -c '"$1" true 9>&1 2>/dev/null | cat; exit "${PIPESTATUS[0]}"' bash "$support/with-keyring.sh"
result=$?
[ "$result" -eq 99 ] || { echo "with-keyring.sh exited with $result, or left a process running" >&2; exit 1; }
