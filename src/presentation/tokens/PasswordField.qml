import QtQuick
import QtQuick.Controls.Basic

/// A labelled password field. What is typed never reaches the accessibility bus, also while it is revealed.
FocusScope {
    id: field

    property string label
    property alias text: input.text
    property string prompt
    property bool revealed: false
    signal accepted()
    signal textEdited()
    signal revealToggled()

    implicitWidth: 280
    implicitHeight: content.implicitHeight
    Accessible.role: Accessible.EditableText
    Accessible.name: label
    Accessible.focusable: true

    Column {
        id: content

        width: field.width
        spacing: 6

        Text {
            text: field.label
            color: Colors.textSecondary
            font: Typography.statusText
            Accessible.ignored: true
        }
        TextField {
            id: input

            width: field.width
            height: 40
            rightPadding: 92
            focus: true
            echoMode: field.revealed ? TextInput.Normal : TextInput.Password
            inputMethodHints: Qt.ImhSensitiveData | Qt.ImhNoPredictiveText | Qt.ImhNoAutoUppercase
            color: Colors.textPrimary
            placeholderText: field.prompt
            placeholderTextColor: Colors.textTertiary
            selectionColor: Colors.primary
            font: Typography.scaledFont(Typography.calloutSize, Typography.regular)
            Accessible.ignored: true
            onAccepted: field.accepted()
            onTextEdited: field.textEdited()
            background: Rectangle {
                radius: DesignSystem.cornerRadiusMedium
                color: Colors.backgroundSecondary
                border.width: input.activeFocus ? 2 : 1
                border.color: input.activeFocus ? Colors.primaryAccent : Colors.border
            }
        }
    }
    ButtonBase {
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 6
        implicitHeight: 28
        leftPadding: Spacing.sm
        rightPadding: Spacing.sm
        fill: "transparent"
        foreground: Colors.textSecondary
        font: Typography.statusText
        symbol: field.revealed ? "eye.slash.fill" : "eye.fill"
        text: field.revealed ? "Hide" : "Show"
        Accessible.description: field.label
        onClicked: field.revealToggled()
    }
}
