// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// Shows under the toolbar what is being protected. It takes no room while `text` is empty.
Rectangle {
    id: bar

    property string text

    implicitHeight: text === "" ? 0 : Math.max(Spacing.xxl, words.implicitHeight + Spacing.sm)
    visible: implicitHeight > 0
    color: Colors.selection
    clip: true
    Accessible.role: Accessible.StatusBar
    Accessible.name: text

    Behavior on implicitHeight {
        NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
    }

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: Spacing.xl
        anchors.rightMargin: Spacing.xl
        spacing: Spacing.sm

        ActivityIndicator {
            Layout.preferredWidth: Metrics.symbolControl
            Layout.preferredHeight: Metrics.symbolControl
            color: Colors.primaryAccent
        }

        Text {
            id: words

            Layout.fillWidth: true
            text: bar.text
            horizontalAlignment: Text.AlignLeft
            color: Colors.textPrimary
            font.pixelSize: Typography.subheadlineSize
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
}
