// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Design

/// A vertical scroll bar that is shown while part of the content is out of view.
ScrollBar {
    id: bar

    policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    // Large enough to be dragged even if there are many items.
    minimumSize: Math.min(1, Spacing.xl / Math.max(1, height))

    contentItem: Rectangle {
        implicitWidth: Spacing.xs
        radius: width / 2
        color: bar.pressed || bar.hovered ? Colors.textSecondary : Colors.textTertiary
    }
}
