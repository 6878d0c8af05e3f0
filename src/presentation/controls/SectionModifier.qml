// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The background of a section.
Rectangle {
    property color backgroundColor: Colors.cardBackground

    radius: DesignSystem.cornerRadiusLarge
    color: backgroundColor
    border.width: 1
    border.color: Colors.borderSubtle
}
