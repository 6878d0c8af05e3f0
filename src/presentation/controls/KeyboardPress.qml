// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// Presses a control on Return, Enter or an action from the accessibility bus, as the pointer and the space bar do.
QtObject {
    id: press

    required property Item control

    signal pressed

    function perform() {
        if (control.enabled)
            pressed()
    }

    readonly property Connections keys: Connections {
        target: press.control.Keys
        function onReturnPressed() { press.perform() }
        function onEnterPressed() { press.perform() }
    }
    readonly property Connections accessible: Connections {
        target: press.control.Accessible
        function onPressAction() { press.perform() }
        function onToggleAction() { press.perform() }
    }
}
