import QtQuick
import QtQuick.Layouts
import QtQuick.Controls.Basic

/// The sheet under every modal question: overlay, title, symbol, body and buttons.
Popup {
    id: sheet

    property bool isPresented: false
    property string title
    property string symbol
    property color symbolColor: Colors.primaryAccent
    property int minimumWidth: 350
    property int maximumWidth: 500
    /// What takes the keyboard when the sheet opens.
    property Item initialFocus
    default property alias body: bodySlot.data
    property alias buttons: buttonSlot.data
    property Item focusBefore
    signal escaped()
    signal returned()

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: parent ? Math.max(minimumWidth, Math.min(maximumWidth, parent.width - 2 * Spacing.xxl)) : maximumWidth
    padding: Spacing.modalPadding
    modal: true
    focus: true
    closePolicy: Popup.NoAutoClose
    visible: isPresented

    onAboutToShow: focusBefore = parent && parent.Window.window ? parent.Window.window.activeFocusItem : null
    onOpened: if (initialFocus) initialFocus.forceActiveFocus(Qt.TabFocusReason)
    onClosed: if (focusBefore) focusBefore.forceActiveFocus(Qt.OtherFocusReason)

    Overlay.modal: Rectangle { color: Colors.modalOverlay }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: DesignSystem.animationStandard; easing.type: Easing.InOutQuad }
        NumberAnimation { property: "scale"; from: 0.96; to: 1; duration: DesignSystem.animationStandard; easing.type: Easing.InOutQuad }
    }

    background: Item {
        Repeater {
            model: 6

            Rectangle {
                required property int index

                anchors.fill: parent
                anchors.margins: -4 * (index + 1)
                anchors.topMargin: -4 * (index + 1) + 8
                anchors.bottomMargin: -4 * (index + 1) - 8
                radius: DesignSystem.cornerRadiusModal + 4 * (index + 1)
                color: Colors.modalShadow
            }
        }
        Rectangle {
            anchors.fill: parent
            radius: DesignSystem.cornerRadiusModal
            color: Colors.modalBackground
            border.width: 1
            border.color: Colors.border
        }
    }

    contentItem: FocusScope {
        focus: true
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.Dialog
        Accessible.name: sheet.title
        Keys.onEscapePressed: sheet.escaped()
        Keys.onReturnPressed: sheet.returned()
        Keys.onEnterPressed: sheet.returned()

        ColumnLayout {
            id: column

            anchors.left: parent.left
            anchors.right: parent.right
            spacing: Spacing.lg

            Rectangle {
                Layout.alignment: Qt.AlignHCenter
                implicitWidth: 64
                implicitHeight: 64
                radius: 32
                visible: sheet.symbol !== ""
                color: Qt.alpha(sheet.symbolColor, 0.16)

                SymbolImage {
                    anchors.centerIn: parent
                    symbol: sheet.symbol
                    color: sheet.symbolColor
                    size: 32
                }
            }
            Text {
                Layout.fillWidth: true
                text: sheet.title
                textFormat: Text.PlainText
                color: Colors.text
                font: Typography.modalTitle
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            ColumnLayout {
                id: bodySlot

                Layout.fillWidth: true
                spacing: Spacing.md
            }
            RowLayout {
                id: buttonSlot

                Layout.fillWidth: true
                Layout.topMargin: Spacing.sm
                spacing: Spacing.md
            }
        }
    }
}
