// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design
import QtQuick.Controls.Basic
import QtQuick.Layouts

/// The one sheet under every dialog: overlay, panel, symbol, title, message, a body and a row of buttons. It takes all
/// input while it shows, keeps the keyboard inside, and gives it back afterwards.
FocusScope {
    id: sheet

    property bool presented: false
    property string title
    property string message
    property string symbol
    property color symbolColor: Colors.primaryAccent
    /// The symbol grows into its place when the sheet appears, over 0.6 seconds.
    property bool symbolSpringsIn: false
    /// The symbol's circle beats for as long as the sheet shows.
    property bool symbolPulses: false
    property int symbolCircle: 64
    /// There is little room: what is not words takes less of it.
    readonly property bool isCompact: height < 640
    readonly property int padding: isCompact ? Spacing.xl : Spacing.modalPadding
    property int minimumSheetWidth: 400
    property int maximumSheetWidth: 500
    /// The item that gets the keyboard when the sheet appears.
    property Item initialFocusItem: null
    default property alias body: bodyColumn.data
    property alias buttons: buttonRow.data

    /// Return, where no button and no field has used it.
    signal returnPressed
    signal escapePressed
    signal opened

    readonly property var window: Window.window
    property Item previousFocusItem: null
    /// Whether the control that had the keyboard before showed it; it shows it again afterwards.
    property bool previousHadRing: false
    property Item lastInside: null
    /// Follows `presented`, but begins as false, so that a sheet made already presented appears as any other.
    property bool shown: false

    anchors.fill: parent
    z: 100 + SheetStack.sheets.indexOf(sheet)
    visible: presented || panel.opacity > 0
    enabled: presented
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    Accessible.description: message
    Accessible.ignored: !presented

    onPresentedChanged: presented ? appear() : disappear()
    Component.onCompleted: {
        if (presented && SheetStack.sheets.indexOf(sheet) < 0)
            appear()
    }
    Component.onDestruction: SheetStack.close(sheet)

    function appear() {
        shown = true
        previousFocusItem = Window.activeFocusItem
        previousHadRing = previousFocusItem?.visualFocus ?? false
        SheetStack.open(sheet)
        opened()
        Qt.callLater(takeFocus)
    }

    function disappear() {
        shown = false
        const above = SheetStack.close(sheet)
        // With the focus kept, the next opening would find the keyboard here already and show no ring.
        focus = false
        if (!above) {
            if (previousFocusItem)
                previousFocusItem.forceActiveFocus(previousHadRing ? Qt.TabFocusReason : Qt.OtherFocusReason)
        } else if (isInside(above.previousFocusItem)) {
            // It cannot give the keyboard back to a sheet that is gone.
            above.previousFocusItem = previousFocusItem
            above.previousHadRing = previousHadRing
        }
        previousFocusItem = null
        lastInside = null
    }

    function takeFocus() {
        if (presented && SheetStack.isTop(sheet))
            (initialFocusItem ?? firstControl()).forceActiveFocus(Qt.TabFocusReason)
    }

    /// A control that the keyboard reaches is brought into view, where the body is longer than the sheet.
    function reveal(item) {
        if (!scroller.interactive || !isInside(item) || item === sheet)
            return
        const top = item.mapToItem(content, 0, 0).y
        if (top < 0 || top > content.height)
            return
        if (top < scroller.contentY)
            scroller.contentY = Math.max(0, top - Spacing.md)
        else if (top + item.height > scroller.contentY + scroller.height)
            scroller.contentY = Math.min(scroller.contentHeight - scroller.height,
                                         top + item.height + Spacing.md - scroller.height)
    }

    function scrollBy(distance) {
        scroller.contentY = Math.max(0, Math.min(scroller.contentHeight - scroller.height,
                                                 scroller.contentY + distance))
    }

    function isInside(item) {
        for (let each = item; each; each = each.parent) {
            if (each === sheet)
                return true
        }
        return false
    }

    /// The sheet itself where it has no control: the keyboard stays here all the same.
    function firstControl() {
        const next = nextItemInFocusChain(true)
        return isInside(next) ? next : sheet
    }

    function lastControl() {
        const first = firstControl()
        let last = first
        for (let next = last.nextItemInFocusChain(true); next !== first && isInside(next);
             next = next.nextItemInFocusChain(true))
            last = next
        return last
    }

    /// The keyboard went elsewhere: by Tab it comes in again at the other end, else it returns to where it was.
    function bringBack() {
        const outside = Window.activeFocusItem
        if (!presented || !SheetStack.isTop(sheet) || isInside(outside))
            return
        const last = lastInside
        if (!last)
            takeFocus()
        else if (outside === last.nextItemInFocusChain(true))
            firstControl().forceActiveFocus(Qt.TabFocusReason)
        else if (outside === last.nextItemInFocusChain(false))
            lastControl().forceActiveFocus(Qt.BacktabFocusReason)
        else
            last.forceActiveFocus()
    }

    Keys.onEscapePressed: escapePressed()
    Keys.onReturnPressed: returnPressed()
    Keys.onEnterPressed: returnPressed()
    Keys.onPressed: (event) => {
        const page = scroller.height - Spacing.xl
        const distances = { [Qt.Key_Down]: Spacing.xl, [Qt.Key_Up]: -Spacing.xl,
                            [Qt.Key_PageDown]: page, [Qt.Key_PageUp]: -page }
        if (scroller.interactive && event.key in distances) {
            scrollBy(distances[event.key])
            event.accepted = true
        }
    }

    Connections {
        target: sheet.presented ? sheet.window : null
        function onActiveFocusItemChanged() {
            const item = sheet.Window.activeFocusItem
            if (!item || !SheetStack.isTop(sheet))
                return
            if (sheet.isInside(item)) {
                sheet.lastInside = item
                sheet.reveal(item)
            } else {
                Qt.callLater(sheet.bringBack)
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Colors.modalOverlay
        opacity: panel.opacity

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: (wheel) => wheel.accepted = true
        }
    }

    Repeater {
        // A soft shadow from a few outlines, each in the token's colour.
        model: DesignSystem.shadowModal.radius / 4

        Rectangle {
            required property int index

            anchors.fill: panel
            anchors.margins: -index * 3
            anchors.topMargin: -index * 3 + DesignSystem.shadowModal.y
            anchors.bottomMargin: -index * 3 - DesignSystem.shadowModal.y
            radius: panel.radius + index * 3
            color: Colors.modalShadow
            opacity: panel.opacity
        }
    }

    Rectangle {
        id: panel

        readonly property real buttonArea: buttonRow.implicitHeight > 0
                                           ? buttonRow.implicitHeight + content.spacing + Spacing.sm : 0

        anchors.centerIn: parent
        width: Math.min(sheet.width - Spacing.xl * 2,
                        Math.max(sheet.minimumSheetWidth,
                                 Math.min(sheet.maximumSheetWidth, Math.max(content.implicitWidth, buttonRow.implicitWidth)
                                          + sheet.padding * 2)))
        height: Math.min(sheet.height - Spacing.xl, content.implicitHeight + buttonArea + sheet.padding * 2)
        radius: DesignSystem.cornerRadiusModal
        color: Colors.modalBackground
        border.width: 1
        border.color: Colors.border
        opacity: sheet.shown ? 1 : 0
        scale: sheet.shown ? 1 : 0.96

        Behavior on opacity {
            NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.InOutQuad }
        }
        Behavior on scale {
            NumberAnimation { duration: DesignSystem.animationQuick; easing.type: Easing.OutBack }
        }

        Flickable {
            id: scroller

            /// Room for the rings around the outermost controls.
            readonly property int edge: Spacing.xs

            anchors.fill: parent
            anchors.margins: sheet.padding - edge
            anchors.bottomMargin: sheet.padding - edge + panel.buttonArea
            contentHeight: content.implicitHeight + 2 * edge
            interactive: contentHeight > height
            boundsBehavior: Flickable.StopAtBounds
            clip: interactive

            ScrollBar.vertical: SlimScrollBar {
                parent: panel
                x: panel.width - width - Spacing.xs
                y: scroller.y
                height: scroller.height
            }

            ColumnLayout {
                id: content

                x: scroller.edge
                y: scroller.edge
                width: scroller.width - 2 * scroller.edge
                spacing: sheet.isCompact ? Spacing.md : Spacing.lg

                Rectangle {
                    id: circle

                    Layout.alignment: Qt.AlignHCenter
                    implicitWidth: sheet.isCompact ? Spacing.minTouchTarget : sheet.symbolCircle
                    implicitHeight: implicitWidth
                    radius: height / 2
                    visible: sheet.symbol !== ""
                    color: Qt.rgba(sheet.symbolColor.r, sheet.symbolColor.g, sheet.symbolColor.b, 0.16)
                    scale: sheet.shown || !sheet.symbolSpringsIn ? 1 : 0.3

                    Behavior on scale {
                        enabled: sheet.shown
                        NumberAnimation { duration: 600; easing.type: Easing.OutBack }
                    }

                    SequentialAnimation {
                        running: sheet.symbolPulses && sheet.shown
                        loops: Animation.Infinite
                        alwaysRunToEnd: true
                        NumberAnimation { target: pulse; property: "scale"; to: 1.15; duration: 500; easing.type: Easing.InOutQuad }
                        NumberAnimation { target: pulse; property: "scale"; to: 1; duration: 500; easing.type: Easing.InOutQuad }
                    }

                    SymbolImage {
                        id: pulse

                        anchors.centerIn: parent
                        symbol: sheet.symbol
                        size: circle.height / 2
                        color: sheet.symbolColor
                    }
                }

                Text {
                    Layout.fillWidth: true
                    text: sheet.title
                    textFormat: Text.PlainText
                    font: Typography.modalTitle
                    color: Colors.textPrimary
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    elide: Text.ElideMiddle
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                Text {
                    Layout.fillWidth: true
                    Layout.topMargin: -Spacing.sm
                    visible: text !== ""
                    text: sheet.message
                    textFormat: Text.PlainText
                    font: Typography.settingLabel
                    color: Colors.textSecondary
                    lineHeight: 1.25
                    horizontalAlignment: Text.AlignHCenter
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }

                ColumnLayout {
                    id: bodyColumn

                    Layout.fillWidth: true
                    spacing: Spacing.md
                    visible: children.length > 0
                }
            }
        }

        RowLayout {
            id: buttonRow

            anchors.left: parent.left
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: sheet.padding
            spacing: Spacing.md
        }
    }
}
