// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The button of a screen's main action.
FilledButton {
    fill: Colors.cta
    fillGradient: enabled ? mainGradient : null

    Gradient {
        id: mainGradient

        orientation: Gradient.Horizontal
        GradientStop { position: 0; color: Colors.primaryGradient.from }
        GradientStop { position: 1; color: Colors.primaryGradient.to }
    }
}
