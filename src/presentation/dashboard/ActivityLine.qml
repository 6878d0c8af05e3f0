// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A line of text, in whose place the window says what it is working on, so that nothing moves then.
Item {
    id: line

    property string restingText
    /// What is going on; empty for the resting text.
    property string activity
    readonly property bool isWorking: activity !== ""

    component Words: Text {
        Layout.fillWidth: true
        font.pixelSize: Typography.subheadlineSize
        textFormat: Text.PlainText
        horizontalAlignment: Text.AlignLeft
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }

    implicitWidth: resting.implicitWidth
    implicitHeight: resting.implicitHeight
    Accessible.role: isWorking ? Accessible.StatusBar : Accessible.StaticText
    Accessible.name: isWorking ? activity : restingText

    Words {
        id: resting

        anchors.fill: parent
        visible: !line.isWorking
        text: line.restingText
        color: Colors.textSecondary
    }

    RowLayout {
        anchors.fill: parent
        spacing: Spacing.sm
        visible: line.isWorking

        ActivityIndicator {
            Layout.preferredWidth: Metrics.symbolText
            Layout.preferredHeight: Metrics.symbolText
            color: Colors.primaryAccent
        }

        Words {
            text: line.activity
            color: Colors.textPrimary
        }
    }
}
