// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Design

/// A secret that is typed, hidden until it is asked for. The wrapper speaks for it on the accessibility bus, which
/// never gets the text itself, shown or hidden.
FocusScope {
    id: scope

    property string label
    property string prompt
    // Not "text": Qt reads that name of the wrapper for the accessibility bus.
    property alias secret: input.text
    property bool revealed: false
    /// What is typed into; the scope alone would give the keyboard to whichever of its two controls had it last.
    property alias inputItem: input

    signal accepted
    signal edited

    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.EditableText
    Accessible.name: label
    Accessible.description: prompt
    Accessible.focusable: true
    Accessible.focused: input.activeFocus

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: Spacing.xs

        Text {
            text: scope.label
            font: Typography.settingLabel
            color: Colors.textSecondary
            Accessible.ignored: true
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Spacing.sm

            InputField {
                id: input

                Layout.fillWidth: true
                focus: true
                placeholderText: scope.prompt
                echoMode: scope.revealed ? TextInput.Normal : TextInput.Password
                inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
                Accessible.ignored: true
                // Taken here, so that it does not reach the sheet as a second press.
                Keys.onReturnPressed: scope.accepted()
                Keys.onEnterPressed: scope.accepted()
                onTextEdited: scope.edited()
            }

            SecondaryButton {
                Layout.preferredWidth: Metrics.revealButtonWidth
                implicitHeight: Metrics.inputHeight
                leftPadding: Spacing.sm
                rightPadding: Spacing.sm
                text: scope.revealed ? "Hide" : "Show"
                symbol: scope.revealed ? "eye.slash.fill" : "eye.fill"
                Accessible.description: scope.label
                onClicked: scope.revealed = !scope.revealed
            }
        }
    }
}
