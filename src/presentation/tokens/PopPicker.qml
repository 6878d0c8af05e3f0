import QtQuick
import QtQuick.Controls.Basic

/// A popup list with one chosen option.
ButtonBase {
    id: picker

    property string label
    property var options: []
    property string selection
    readonly property bool isOpen: menu.visible
    signal selected(string option)

    text: label + ": " + selection
    symbol: "chevron.down"
    fill: Colors.cardBackground
    outline: Colors.border
    onClicked: menu.open()

    Menu {
        id: menu

        y: picker.height + Spacing.xs
        palette.window: Colors.cardBackground
        palette.windowText: Colors.textPrimary
        palette.light: Colors.primary
        palette.dark: Colors.border

        Repeater {
            model: picker.options

            MenuItem {
                required property string modelData

                text: modelData
                font: Typography.buttonText
                Accessible.onPressAction: if (enabled) triggered()
                onTriggered: {
                    picker.selected(modelData)
                    menu.close()
                }
            }
        }
    }
}
