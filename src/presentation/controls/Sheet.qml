// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Quillhaven.Design
import QtQuick.Controls.Basic
import QtQuick.Layouts
import QtQuick.Templates as T

/// The base of all dialogs: overlay, panel, symbol, title, message, a body and a row of buttons. It receives all input
/// while it is shown, keeps the keyboard focus inside, and returns it afterwards. Escape and Return
/// are handled by the dialog. Of several sheets the last one shown is on top and has the focus; when it closes, the focus
/// returns to the one below.
T.Dialog {
    id: sheet

    property bool presented: false
    property string message
    property string symbol
    property color symbolColor: Colors.primaryAccent
    /// The symbol grows to its full size when the sheet appears, over 0.6 seconds.
    property bool symbolSpringsIn: false
    /// Milliseconds of the sheet's appearance.
    property int appearance: DesignSystem.animationQuick
    /// The symbol pulses while the sheet is shown.
    property bool symbolPulses: false
    property int symbolCircle: Metrics.sheetSymbolCircle
    readonly property size room: parent ? Qt.size(parent.width, parent.height) : Qt.size(0, 0)
    /// The window is low: everything but the text takes less room.
    readonly property bool isCompact: room.height < Metrics.compactSheet
    /// The window is narrower than a dialog: it gets nearly all of the width.
    readonly property bool isNarrow: room.width < minimumSheetWidth
    /// The distance from the window's edges.
    readonly property int gap: isNarrow ? Spacing.sm : Spacing.xl
    /// The greatest width that the body can have.
    readonly property int bodyRoom: room.width - 2 * (gap + padding)
    /// The least width of a field, or less where the body has less room.
    readonly property int fieldWidth: Math.min(Metrics.sheetFieldWidth, bodyRoom)
    /// The least width of a body without text, or less where it has less room.
    readonly property int leastBodyWidth: Math.min(Metrics.sheetBodyWidth, bodyRoom)
    property int minimumSheetWidth: Metrics.sheetMinimumWidth
    property int maximumSheetWidth: Metrics.sheetMaximumWidth
    /// The item that gets the keyboard focus when the sheet appears; null for the first control.
    property Item initialFocusItem: null
    default property alias body: bodyColumn.data
    /// What stays at the top while the body is scrolled, in place of the symbol, the title and the message.
    property alias heading: headingColumn.data
    readonly property bool hasHeading: headingColumn.children.length > 0
    property string accessibleName: title
    property string accessibleHint: message
    property alias buttons: buttonRow.data

    /// Return was pressed, and no button or field has handled it.
    signal returnPressed
    signal escapePressed

    /// The item that had the keyboard focus before the sheet was shown.
    property Item opener: null
    /// Whether the opener showed a focus ring, which it then shows again afterwards.
    property bool openerHadRing: false
    /// Used instead of the dialog's own scale, with which Qt 6.4 displaces the dialog.
    property real panelScale: 0.96

    // Whole numbers, since text is blurred at fractional positions.
    x: Math.floor((room.width - width) / 2)
    y: Math.floor((room.height - height) / 2)
    implicitWidth: Math.max(minimumSheetWidth,
                            Math.min(maximumSheetWidth, implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    contentWidth: content.implicitWidth
    contentHeight: content.implicitHeight
    width: Math.min(implicitWidth, room.width - 2 * gap)
    height: Math.min(implicitHeight, room.height - Spacing.xl)
    padding: isNarrow ? Spacing.lg : isCompact ? Spacing.xl : Spacing.modalPadding
    modal: true
    focus: true
    closePolicy: T.Popup.NoAutoClose
    opacity: 0

    Component.onCompleted: {
        // Connected here, since a signal handler would also run while the sheet is created, before it has a window.
        presentedChanged.connect(() => presented ? appear() : disappear())
        if (presented)
            appear()
    }

    function appear() {
        // Without a window, the sheet's host was removed from it and the sheet is about to be destroyed.
        if (!parent.Window.window)
            return
        opener = parent.Window.activeFocusItem
        openerHadRing = opener?.visualFocus ?? false
        enabled = true
        // A control that still has the focus in the scope from the last time would show no focus ring.
        content.focus = false
        open()
        const first = initialFocusItem ?? content.nextItemInFocusChain()
        first.forceActiveFocus(Qt.TabFocusReason)
    }

    /// For the next question in a sheet that is open.
    function takeFocusAgain() {
        if (presented && opened)
            initialFocusItem?.forceActiveFocus(Qt.TabFocusReason)
    }

    function scrollToTop() {
        scroller.scrollTo(0)
    }

    function disappear() {
        // The dialog itself returns the focus only after its transition, and without a focus ring.
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
        NumberAnimation { property: "opacity"; to: 1; duration: sheet.appearance; easing.type: Easing.InOutQuad }
        NumberAnimation { property: "panelScale"; to: 1; duration: sheet.appearance; easing.type: Easing.OutBack }
    }

    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
        NumberAnimation { property: "panelScale"; to: 0.96; duration: DesignSystem.animationQuick; easing.type: Easing.OutBack }
    }

    background: Item {
        scale: sheet.panelScale

        Repeater {
            // A soft shadow, drawn as a few nested rectangles in the token's colour.
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

    // A scope, so that keys are still received here when the control that has the focus is disabled.
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

            ColumnLayout {
                id: headingColumn

                Layout.fillHeight: false
                Layout.bottomMargin: sheet.hasHeading ? Spacing.md : 0
                spacing: Spacing.md
                visible: sheet.hasHeading
            }

            SheetScroller {
                id: scroller

                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.margins: -edge
                spacing: sheet.isCompact ? Spacing.md : Spacing.lg

                ScrollBar.vertical: SlimScrollBar {
                    parent: sheet.background
                    x: sheet.mirrored ? Spacing.xs : sheet.width - width - Spacing.xs
                    y: sheet.topPadding - scroller.edge
                    height: scroller.height
                }

                SheetSymbol {
                    Layout.alignment: Qt.AlignHCenter
                    visible: !sheet.hasHeading
                    implicitWidth: sheet.isCompact ? Spacing.minTouchTarget : sheet.symbolCircle
                    symbol: sheet.symbol
                    symbolColor: sheet.symbolColor
                    showing: sheet.visible
                    springsIn: sheet.symbolSpringsIn
                    pulses: sheet.symbolPulses
                }

                TextLabel {
                    Layout.fillWidth: true
                    visible: !sheet.hasHeading
                    text: sheet.title
                    font: Typography.modalTitle
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    maximumLineCount: Metrics.titleLines
                    elide: Text.ElideRight
                    Accessible.role: Accessible.Heading
                }

                TextLabel {
                    Layout.fillWidth: true
                    Layout.topMargin: -Spacing.sm
                    visible: text !== "" && !sheet.hasHeading
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

    // In Qt 6.4 a dialog has no Accessible attached property, and its title is not its accessible name if it has a
    // description.
    Binding {
        target: sheet.contentItem.parent.Accessible
        property: "name"
        value: sheet.accessibleName
    }

    Binding {
        target: sheet.contentItem.parent.Accessible
        property: "description"
        value: sheet.accessibleHint
    }
}
