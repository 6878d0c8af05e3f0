// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A state, as a word on a pale background in the state's colour.
Rectangle {
    id: badge

    property alias status: indicator.status
    property alias text: indicator.text
    property alias size: indicator.size

    implicitWidth: indicator.implicitWidth + Spacing.sm * 2
    implicitHeight: indicator.implicitHeight + Spacing.xs * 2
    radius: DesignSystem.cornerRadiusSmall
    color: Qt.alpha(indicator.ink, Metrics.badgeOpacity)

    StatusIndicator {
        id: indicator

        anchors.centerIn: parent
        showIcon: false
    }
}
