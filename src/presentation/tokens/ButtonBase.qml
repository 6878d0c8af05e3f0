import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic

/// What the buttons share: keyboard, accessibility, focus ring, hover and busy looks.
Button {
    id: control

    property string symbol
    property bool busy: false
    property color fill: Colors.cta
    property color foreground: Colors.textPrimary
    property color outline: "transparent"

    implicitHeight: DesignSystem.buttonHeight
    leftPadding: Spacing.lg
    rightPadding: Spacing.lg
    focusPolicy: Qt.StrongFocus
    font: Typography.buttonText
    opacity: enabled ? 1 : 0.5
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.focusable: enabled
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: RowLayout {
        spacing: Spacing.sm

        Item { Layout.fillWidth: true }
        BusyIndicator {
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
            visible: control.busy
            running: control.busy
            padding: 0
            palette.dark: control.foreground
            Accessible.ignored: true
        }
        SymbolImage {
            visible: control.symbol !== "" && !control.busy
            symbol: control.symbol
            color: control.foreground
        }
        Text {
            text: control.text
            visible: text !== ""
            color: control.foreground
            font: control.font
            Accessible.ignored: true
        }
        Item { Layout.fillWidth: true }
    }

    background: Rectangle {
        radius: DesignSystem.cornerRadiusMedium
        color: control.hovered && control.enabled ? Qt.tint(control.fill, Qt.rgba(1, 1, 1, DesignSystem.hoverBrightness))
                                                  : control.fill
        border.width: 1
        border.color: control.outline

        Rectangle {
            anchors.fill: parent
            anchors.margins: -3
            radius: parent.radius + 3
            visible: control.activeFocus
            color: "transparent"
            border.width: 2
            border.color: Colors.primaryAccent
        }
    }
}
