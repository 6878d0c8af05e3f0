#!/bin/sh
# SPDX-License-Identifier: GPL-3.0-or-later
# with-mounts.sh COMMAND...: runs a test that mounts small file systems of its own. A plain user gets the right to do so in
# a name space of the command's own; root has it.
if [ "$(id -u)" -eq 0 ]; then exec "$@"; fi
exec unshare --user --map-root-user --mount "$@"
