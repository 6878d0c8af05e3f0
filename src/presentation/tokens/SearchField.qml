import QtQuick
import QtQuick.Controls.Basic

/// A field to search a list with.
TextField {
    id: field

    implicitHeight: DesignSystem.buttonHeight
    leftPadding: 36
    color: Colors.textPrimary
    placeholderTextColor: Colors.textTertiary
    selectionColor: Colors.primary
    selectedTextColor: Colors.textPrimary
    verticalAlignment: TextInput.AlignVCenter
    font: Typography.scaledFont(Typography.calloutSize, Typography.regular)
    Accessible.name: placeholderText

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: Colors.backgroundSecondary
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Colors.primaryAccent : Colors.border

        SymbolImage {
            x: Spacing.md
            anchors.verticalCenter: parent.verticalCenter
            symbol: "magnifyingglass"
            color: Colors.iconMuted
        }
    }
}
