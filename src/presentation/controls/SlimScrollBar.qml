// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A vertical scroll bar that shows for as long as something is out of sight.
ScrollBar {
    id: bar

    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    // Also among many items it can be taken hold of.
    minimumSize: Math.min(1, Spacing.xl / Math.max(1, height))

    contentItem: Rectangle {
        implicitWidth: Spacing.xs
        radius: width / 2
        color: bar.pressed || bar.hovered ? Colors.textSecondary : Colors.textTertiary
    }
}
