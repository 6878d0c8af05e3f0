import QtQuick
import QtQuick.Controls.Basic

/// A button that shows a symbol alone.
Button {
    id: control

    property string symbol
    property string helpText
    property color color: Colors.iconMuted

    implicitWidth: DesignSystem.buttonHeight
    implicitHeight: DesignSystem.buttonHeight
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.5
    ToolTip.text: helpText
    ToolTip.visible: hovered && helpText !== ""
    ToolTip.delay: 600
    Accessible.role: Accessible.Button
    Accessible.name: helpText
    Accessible.focusable: enabled
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        SymbolImage {
            anchors.centerIn: parent
            symbol: control.symbol
            color: control.color
            size: 18
        }
    }
    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: control.hovered && control.enabled ? Colors.hover : "transparent"
        border.width: control.activeFocus ? 2 : 0
        border.color: Colors.primaryAccent
    }
}
