// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import Quillhaven.Design

/// The ring around the control that has the keyboard focus.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    anchors.margins: -Metrics.focusRingGap
    radius: DesignSystem.cornerRadiusMedium + Metrics.focusRingGap
    color: Colors.clear
    border.width: shown ? 2 : 0
    border.color: Colors.focusRingHighContrast
}
