// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Controls.Basic
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Design

ApplicationWindow {
    id: window

    required property QtObject dashboard
    required property QtObject confirmationDialogManager
    required property QtObject protectionMethodDialogManager
    required property QtObject passwordInputDialogManager
    required property QtObject passwordInputState
    required property QtObject masterPasswordDialogManager
    required property QtObject biometrics

    title: "Quillhaven"
    width: 1200
    height: 900
    minimumWidth: Metrics.narrowBar
    minimumHeight: 560
    color: Colors.windowBackground
    palette.toolTipBase: Colors.background
    palette.toolTipText: Colors.textPrimary
    palette.dark: Colors.border

    DashboardView {
        anchors.fill: parent
        dashboard: window.dashboard
        confirmationDialogManager: window.confirmationDialogManager
        protectionMethodDialogManager: window.protectionMethodDialogManager
        passwordInputDialogManager: window.passwordInputDialogManager
        passwordInputState: window.passwordInputState
        masterPasswordDialogManager: window.masterPasswordDialogManager
        biometrics: window.biometrics
    }
}
