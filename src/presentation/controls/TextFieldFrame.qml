// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The frame around a text field.
Rectangle {
    property bool focused: false
    property bool hovered: false

    radius: DesignSystem.cornerRadiusMedium
    color: Colors.backgroundSecondary
    border.width: focused ? 2 : 1
    border.color: focused ? Colors.primaryAccent : hovered ? Colors.border : Colors.borderSubtle
}
