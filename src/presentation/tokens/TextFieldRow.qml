import QtQuick
import QtQuick.Controls.Basic

/// A labelled field for one line of text.
Column {
    id: row

    property string label
    property alias text: input.text
    property string prompt
    signal accepted()

    spacing: Spacing.xs

    Text {
        text: row.label
        color: Colors.textSecondary
        font: Typography.statusText
    }
    TextField {
        id: input

        width: row.width
        implicitHeight: DesignSystem.buttonHeight
        color: Colors.textPrimary
        placeholderText: row.prompt
        placeholderTextColor: Colors.textTertiary
        font: Typography.scaledFont(Typography.calloutSize, Typography.regular)
        Accessible.name: row.label
        onAccepted: row.accepted()
        background: Rectangle {
            radius: DesignSystem.cornerRadiusMedium
            color: Colors.backgroundSecondary
            border.width: input.activeFocus ? 2 : 1
            border.color: input.activeFocus ? Colors.primaryAccent : Colors.border
        }
    }
}
