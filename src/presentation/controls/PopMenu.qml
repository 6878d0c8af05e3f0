// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A list of actions or options under a button.
Menu {
    width: Metrics.menuWidth
    padding: Spacing.xs

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.bgPanel
        border.width: 1
        border.color: Colors.border
    }
}
