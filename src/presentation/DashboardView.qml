import QtQuick
import QtQuick.Layouts
import Quillhaven.Design
import Quillhaven.Dialogs

/// The content of the main window, and the sheets that hang on it.
Item {
    id: view

    required property QtObject dashboard
    required property QtObject confirmationDialogManager
    required property QtObject protectionMethodDialogManager
    required property QtObject passwordInputDialogManager
    required property QtObject passwordInputState
    required property QtObject masterPasswordDialogManager
    required property QtObject biometrics

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        EnhancedToolbar {
            Layout.fillWidth: true
            dashboard: view.dashboard
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.margins: Spacing.xl
            Layout.topMargin: Spacing.lg
            spacing: view.height < 720 ? Spacing.md : Spacing.lg

            SearchFilterBar {
                Layout.fillWidth: true
                Layout.fillHeight: false
                dashboard: view.dashboard
            }

            DashboardStatistics {
                Layout.fillWidth: true
                Layout.fillHeight: false
                isCompact: view.height < 720
                dashboard: view.dashboard
            }

            ProtectedItemsList {
                Layout.fillWidth: true
                Layout.fillHeight: true
                dashboard: view.dashboard
            }
        }
    }

    ProtectionMethodDialog { manager: view.protectionMethodDialogManager }
    PasswordInputDialog {
        manager: view.passwordInputDialogManager
        dialog: view.passwordInputState
    }
    MasterPasswordDialog { manager: view.masterPasswordDialogManager }
    RemoveProtectionDialog { manager: view.dashboard.removeProtectionDialogManager }
    TouchIDPrompt { manager: view.biometrics }
    ErrorDialog {
        manager: view.dashboard.errorDialogManager
        onShowTroubleshooting: view.dashboard.showDefaultTroubleshooting()
    }
    ConfirmationDialog { manager: view.confirmationDialogManager }
}
