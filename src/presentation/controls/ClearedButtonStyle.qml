// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button that has no background until the pointer is over it.
FilledButton {
    fill: Colors.clear
    foreground: Colors.textSecondary
}
