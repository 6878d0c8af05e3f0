// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Quillhaven.Design
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// The one sheet under every dialog: overlay, panel, symbol, title, message, a body and a row of buttons. It takes all
/// input while it shows, keeps the keyboard inside, and gives it back afterwards. Escape and Return are the dialog's to
/// use. Of several sheets the one that appeared last is on top and has the keyboard, and gives it to the next below.
T.Dialog {
    id: sheet

    property bool presented: false
    property string message
    property string symbol
    property color symbolColor: Colors.primaryAccent
    /// The symbol grows into its place when the sheet appears, over 0.6 seconds.
    property bool symbolSpringsIn: false
    /// The symbol's circle beats for as long as the sheet shows.
    property bool symbolPulses: false
    property int symbolCircle: Metrics.sheetSymbolCircle
    readonly property size room: parent ? Qt.size(parent.width, parent.height) : Qt.size(0, 0)
    /// There is little room: what is not words takes less of it.
    readonly property bool isCompact: room.height < Metrics.compactSheet
    property int minimumSheetWidth: Metrics.sheetMinimumWidth
    property int maximumSheetWidth: Metrics.sheetMaximumWidth
    /// The item that gets the keyboard when the sheet appears; without it, the first control.
    property Item initialFocusItem: null
    default property alias body: bodyColumn.data
    property alias buttons: buttonRow.data

    /// Return, where no button and no field has used it.
    signal returnPressed
    signal escapePressed

    /// What had the keyboard before the sheet.
    property Item opener: null
    /// Whether the opener showed that it had the keyboard; it shows it again afterwards.
    property bool openerHadRing: false
    /// Not the dialog's own scale, by which Qt 6.4 moves the dialog out of its place.
    property real panelScale: 0.96

    // Whole numbers, or the text blurs.
    x: Math.floor((room.width - width) / 2)
    y: Math.floor((room.height - height) / 2)
    implicitWidth: Math.max(minimumSheetWidth,
                            Math.min(maximumSheetWidth, implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    contentWidth: content.implicitWidth
    contentHeight: content.implicitHeight
    width: Math.min(implicitWidth, room.width - 2 * Spacing.xl)
    height: Math.min(implicitHeight, room.height - Spacing.xl)
    padding: isCompact ? Spacing.xl : Spacing.modalPadding
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    opacity: 0

    Component.onCompleted: {
        // A handler would also run while the sheet is made, when it has no window yet.
        presentedChanged.connect(() => presented ? appear() : disappear())
        if (presented)
            appear()
    }

    function appear() {
        // A sheet whose host has left its window is about to be destroyed.
        if (!parent.Window.window)
            return
        opener = parent.Window.activeFocusItem
        openerHadRing = opener?.visualFocus ?? false
        enabled = true
        // A control that still has the focus from the last time would get the keyboard without a ring.
        content.focus = false
        open()
        const first = initialFocusItem ?? content.nextItemInFocusChain()
        first.forceActiveFocus(Qt.TabFocusReason)
    }

    function disappear() {
        // The dialog itself gives the keyboard back only after its transition, and without the ring.
        if (contentItem.parent.focus && opener?.visible && opener.enabled)
            opener.forceActiveFocus(openerHadRing ? Qt.TabFocusReason : Qt.OtherFocusReason)
        close()
        enabled = false
    }

    T.Overlay.modal: Rectangle {
        color: Colors.modalOverlay

        Behavior on opacity {
            NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
        }
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; to: 1; duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
        NumberAnimation { property: "panelScale"; to: 1; duration: DesignSystem.animationQuick; easing.type: Easing.OutBack }
    }

    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
        NumberAnimation { property: "panelScale"; to: 0.96; duration: DesignSystem.animationQuick; easing.type: Easing.OutBack }
    }

    background: Item {
        scale: sheet.panelScale

        Repeater {
            // A soft shadow from a few outlines, each in the token's colour.
            model: DesignSystem.shadowModal.radius / 4

            Rectangle {
                required property int index

                anchors.fill: parent
                anchors.margins: -index * 3
                anchors.topMargin: -index * 3 + DesignSystem.shadowModal.y
                anchors.bottomMargin: -index * 3 - DesignSystem.shadowModal.y
                radius: DesignSystem.cornerRadiusModal + index * 3
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

    // A scope, so that the keys still come here when the control that has the keyboard is disabled.
    FocusScope {
        id: content

        anchors.fill: parent
        implicitWidth: column.implicitWidth
        implicitHeight: column.implicitHeight
        scale: sheet.panelScale

        Keys.forwardTo: [scroller]
        Keys.onEscapePressed: sheet.escapePressed()
        Keys.onReturnPressed: sheet.returnPressed()
        Keys.onEnterPressed: sheet.returnPressed()

        ColumnLayout {
            id: column

            anchors.fill: parent
            spacing: buttonRow.implicitHeight > 0 ? scroller.spacing + Spacing.sm : 0

            SheetScroller {
                id: scroller

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.margins: -edge
                spacing: sheet.isCompact ? Spacing.md : Spacing.lg

                ScrollBar.vertical: SlimScrollBar {
                    parent: sheet.background
                    x: sheet.width - width - Spacing.xs
                    y: sheet.topPadding - scroller.edge
                    height: scroller.height
                }

                SheetSymbol {
                    Layout.alignment: Qt.AlignHCenter
                    implicitWidth: sheet.isCompact ? Spacing.minTouchTarget : sheet.symbolCircle
                    symbol: sheet.symbol
                    symbolColor: sheet.symbolColor
                    showing: sheet.visible
                    springsIn: sheet.symbolSpringsIn
                    pulses: sheet.symbolPulses
                }

                TextLabel {
                    Layout.fillWidth: true
                    text: sheet.title
                    font: Typography.modalTitle
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideMiddle
                    Accessible.role: Accessible.Heading
                }

                TextLabel {
                    Layout.fillWidth: true
                    Layout.topMargin: -Spacing.sm
                    visible: text !== ""
                    text: sheet.message
                    font: Typography.settingLabel
                    color: Colors.textSecondary
                    lineHeight: 1.25
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                }

                ColumnLayout {
                    id: bodyColumn

                    Layout.fillWidth: true
                    spacing: Spacing.md
                    visible: children.length > 0
                }
            }

            RowLayout {
                id: buttonRow

                Layout.fillHeight: false
                spacing: Spacing.md
            }
        }
    }

    // Qt 6.4 has no Accessible for a dialog, and takes no name from its title once there is a description.
    Binding {
        target: sheet.contentItem.parent.Accessible
        property: "name"
        value: sheet.title
    }

    Binding {
        target: sheet.contentItem.parent.Accessible
        property: "description"
        value: sheet.message
    }
}
