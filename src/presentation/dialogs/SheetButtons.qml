// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design

/// The two buttons at the bottom of a sheet, with the same width: "Cancel", and the one that acts.
RowLayout {
    id: row

    property alias secondaryText: secondary.text
    property alias showsSecondary: secondary.visible
    property alias secondaryButton: secondary
    property alias mainText: main.text
    property alias mainSymbol: main.symbol
    property alias mainButton: main
    property alias canAct: main.enabled
    property alias busy: main.busy

    signal secondaryPressed
    signal mainPressed

    Layout.fillWidth: true
    spacing: Spacing.md

    SecondaryButton {
        id: secondary

        Layout.fillWidth: true
        Layout.preferredWidth: 1
        text: "Cancel"
        onClicked: row.secondaryPressed()
    }

    PrimaryFilledButton {
        id: main

        Layout.fillWidth: true
        Layout.preferredWidth: 1
        onClicked: row.mainPressed()
    }
}
