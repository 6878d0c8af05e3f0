// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A list of actions or options under a button.
Menu {
    width: Metrics.menuWidth
    padding: Spacing.xs
    // A sheet that appears takes the focus; the menu would remain above it.
    onActiveFocusChanged: if (!activeFocus && opened) close()

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.bgPanel
        border.width: 1
        border.color: Colors.border
    }
}
