#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# as-plain-user.sh COMMAND...: runs the command without the rights of root, as file managers run: some check whose a file is
# and whether it may be executed, and let root pass.
set -euo pipefail
[ "$(id -u)" -eq 0 ] || exec "$@"
exec unshare --user --map-user=1000 --map-group=1000 "$@"
