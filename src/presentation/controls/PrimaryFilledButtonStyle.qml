// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick

/// A filled button that shows a gradient instead of its fill, if it has one.
FilledButton {
    id: style

    /// A ColorGradient, from left to right, or null.
    property var gradient: null

    fillGradient: gradient ? run : null

    Gradient {
        id: run

        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: style.gradient ? style.gradient.from : style.fill }
        GradientStop { position: 1; color: style.gradient ? style.gradient.to : style.fill }
    }
}
