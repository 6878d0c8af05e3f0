// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design
import Quillhaven.Preferences

/// A small capsule with the state of the start at login in one word.
Rectangle {
    id: badge

    required property LaunchAtLoginBadgeModel serviceManager

    implicitWidth: content.implicitWidth + 2 * Spacing.sm
    implicitHeight: content.implicitHeight + 2 * Spacing.xs
    radius: height / 2
    color: Qt.alpha(content.ink, Metrics.badgeOpacity)

    ToneText {
        id: content

        anchors.centerIn: parent
        symbol: badge.serviceManager.icon
        symbolSize: Metrics.symbolTiny
        text: badge.serviceManager.word
        tone: badge.serviceManager.tone
        font: Typography.statusText
    }
}
