// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
import Quillhaven.Design
import Quillhaven.Onboarding

/// The introduction that a first start shows.
Sheet {
    id: sheet

    required property OnboardingManager onboardingManager

    presented: onboardingManager.shouldShowOnboarding
    title: "Welcome to Quillhaven"
    message: "Protect your sensitive files with ease"
    symbol: "lock.shield.fill"
    symbolCircle: Metrics.largeSheetSymbolCircle
    minimumSheetWidth: Metrics.warningSheetMinimumWidth
    initialFocusItem: startButton
    onReturnPressed: onboardingManager.getStarted()
    onEscapePressed: onboardingManager.close()

    ColumnLayout {
        Layout.fillWidth: true
        Layout.topMargin: Spacing.sm
        spacing: Spacing.lg
        Accessible.role: Accessible.List
        Accessible.name: "Steps"

        OnboardingStep {
            Layout.fillWidth: true
            number: "1"
            title: "Protect Your First File"
            description: "Click 'Protect New Item' or drag & drop files into the dashboard"
        }

        OnboardingStep {
            Layout.fillWidth: true
            number: "2"
            title: "Choose Protection Method"
            description: "Select password protection or Touch ID for secure access"
        }

        OnboardingStep {
            Layout.fillWidth: true
            number: "3"
            title: "Access Anytime"
            description: "Use the menu bar icon or dashboard to unlock your files"
        }
    }

    TextLabel {
        Layout.fillWidth: true
        Layout.topMargin: Spacing.sm
        text: "You can always access settings later from the menu bar"
        font: Typography.settingDescription
        color: Colors.textSecondary
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    buttons: PrimaryFilledButton {
        id: startButton

        Layout.fillWidth: true
        text: "Get Started"
        onClicked: sheet.onboardingManager.getStarted()
    }
}
