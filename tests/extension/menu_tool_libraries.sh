#!/bin/bash
# SPDX-License-Identifier: GPL-3.0-or-later
# menu_tool_libraries.sh TOOL: checks that a menu, which waits for the tool, does not wait for the libraries of a window.
set -euo pipefail
needed=$(readelf -d "$1" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
grep -q '^libQt6Core' <<<"$needed" || { echo "No library of Qt was found: the check itself is broken." >&2; exit 1; }
if grep -E '^libQt[0-9]*(Quick|Qml|Widgets|Gui)' <<<"$needed"; then
    echo "The menu tool loads the libraries above for nothing." >&2
    exit 1
fi
