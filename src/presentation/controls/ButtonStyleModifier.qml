// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// A button in one of the looks of ButtonStyleType.
FilledButton {
    id: button

    property int type: ButtonStyleType.Primary

    fill: {
        switch (button.type) {
        case ButtonStyleType.Secondary: return Colors.bgPanel
        case ButtonStyleType.Destructive: return Colors.destructive
        case ButtonStyleType.Cleared: return Colors.clear
        default: return Colors.cta
        }
    }
    outline: type === ButtonStyleType.Secondary ? Colors.borderSubtle : Colors.clear
}
