// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// A password field whose text is hidden until the user asks to see it. The wrapper represents it on the accessibility
/// bus, which never receives the text, whether it is visible or hidden.
FocusScope {
    id: scope

    property string label
    property string prompt
    // Not "text": Qt would put a property of that name on the accessibility bus.
    property alias secret: input.text
    property bool revealed: false
    /// The field itself. Focus it and not the scope, which would pass the focus to the one of its two controls that had
    /// it last.
    property alias inputItem: input

    signal accepted
    signal edited

    implicitWidth: column.implicitWidth
    implicitHeight: column.implicitHeight
    Accessible.role: Accessible.EditableText
    Accessible.name: label
    // The toolkit puts no name of a password on the bus.
    Accessible.description: label
    Accessible.passwordEdit: true // else screen readers speak each key
    Accessible.focusable: true
    Accessible.focused: input.activeFocus

    ColumnLayout {
        id: column

        anchors.fill: parent
        spacing: Spacing.xs

        Text {
            Layout.fillWidth: true
            text: scope.label
            horizontalAlignment: Text.AlignLeft
            wrapMode: Text.Wrap
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
                // Handled here, so that the sheet does not handle the key a second time.
                Keys.onReturnPressed: scope.accepted()
                Keys.onEnterPressed: scope.accepted()
                onTextEdited: scope.edited()
                // After the toolkit's own event, which is about this ignored field.
                onActiveFocusChanged: if (activeFocus) AccessibleFocus.reportLater(scope)
            }

            SecondaryButton {
                Layout.preferredWidth: Metrics.revealButtonWidth
                implicitHeight: input.implicitHeight
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
