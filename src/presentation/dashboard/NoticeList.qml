// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

/// The notices, one below the other, each with its buttons. It takes no room while there are none.
ColumnLayout {
    id: list

    required property NoticesModel notices

    spacing: Spacing.sm
    visible: notices.count > 0

    Repeater {
        model: list.notices

        Rectangle {
            id: notice

            required property string text
            required property string actionTitle
            required property string otherActionTitle
            required property bool isDismissible
            required property bool isWaiting
            required property int index

            Layout.fillWidth: true
            implicitHeight: content.implicitHeight + 2 * Spacing.sm
            radius: DesignSystem.cornerRadiusMedium
            color: isWaiting ? Colors.selection : Colors.badgeWarningBg
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text

            RowLayout {
                id: content

                anchors.left: parent.left
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                anchors.leftMargin: Spacing.md
                anchors.rightMargin: Spacing.sm
                spacing: Spacing.sm

                ActivityIndicator {
                    Layout.preferredWidth: Metrics.symbolControl
                    Layout.preferredHeight: Metrics.symbolControl
                    visible: notice.isWaiting
                    color: Colors.primaryAccent
                }

                SymbolImage {
                    visible: !notice.isWaiting
                    symbol: "exclamationmark.triangle.fill"
                    size: Metrics.symbolControl
                    color: Colors.warning
                }

                Text {
                    Layout.fillWidth: true
                    text: notice.text
                    textFormat: Text.PlainText
                    color: Colors.textPrimary
                    font.pixelSize: Typography.subheadlineSize
                    horizontalAlignment: Text.AlignLeft
                    wrapMode: Text.Wrap
                    maximumLineCount: 4
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }

                SecondaryButton {
                    visible: notice.otherActionTitle !== ""
                    text: notice.otherActionTitle
                    onClicked: list.notices.actOtherwise(notice.index)
                }

                SecondaryButton {
                    visible: notice.actionTitle !== ""
                    text: notice.actionTitle
                    onClicked: list.notices.act(notice.index)
                }

                IconButton {
                    visible: notice.isDismissible
                    symbol: "xmark"
                    helpText: "Dismiss"
                    onClicked: list.notices.dismiss(notice.index)
                }
            }
        }
    }
}
