// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Quillhaven
import Quillhaven.Controls
import Quillhaven.Dashboard
import Quillhaven.Dialogs
import Quillhaven.Onboarding
import Quillhaven.Preferences

/// The sheets of a window, over its content. Questions are shown in one of the windows, the progress of operations in
/// the main window.
Item {
    id: host

    required property SheetModels models
    readonly property QuestionWindow place: models.questionWindow

    /// The main window also shows the progress of operations, and gets the questions for which there is no window.
    property bool isInMainWindow: false

    // The sheets of the dashboard and its rows that are open.
    readonly property bool showingItemDetails: models.itemDetails.isPresented
    readonly property bool showingBulkProgress: models.bulkProgress.isPresented
    readonly property bool showingShredProgress: models.shredProgress.isPresented
    readonly property bool showingSettings: models.preferences.isPresented
    readonly property bool showingBulkFilePicker: models.bulkFilePicker.isPresented
    readonly property bool showingShredConfirmation: models.shredConfirmation.isPresented
    readonly property bool showingDeleteConfirmation: models.deleteConfirmation.isPresented
    readonly property bool showingRemoveConfirmation: models.removeProtectionDialogManager.isPresented
    readonly property bool showingErrorSheet: models.errorDialogSheet.isPresented

    Component.onCompleted: isInMainWindow ? place.addMain(Window.window) : place.add(Window.window)

    // Repeaters with one item or none, because the Loader of Qt 6.4 cannot create a bound component.
    Repeater {
        model: host.place.mainWindow === host.Window.window ? 1 : 0

        Item {
            anchors.fill: parent

            SheetLoader {
                presented: host.models.onboardingManager.shouldShowOnboarding
                sourceComponent: OnboardingView { onboardingManager: host.models.onboardingManager }
            }
            SheetLoader {
                presented: host.models.keyboardShortcuts.isPresented
                sourceComponent: KeyboardShortcutsView { shortcuts: host.models.keyboardShortcuts }
            }
            SheetLoader {
                presented: host.showingItemDetails
                sourceComponent: ItemDetailView { details: host.models.itemDetails }
            }
            SheetLoader {
                presented: host.showingBulkProgress
                sourceComponent: BulkProgressView { operation: host.models.bulkProgress }
            }
            SheetLoader {
                presented: host.showingShredProgress
                sourceComponent: ShredProgressView { operation: host.models.shredProgress }
            }
        }
    }

    Repeater {
        model: host.place.window === host.Window.window ? 1 : 0

        Item {
            anchors.fill: parent

            SheetLoader {
                presented: host.showingSettings
                sourceComponent: RefinedPreferencesModal { preferences: host.models.preferences }
            }
            SheetLoader {
                presented: host.models.rescue.isPresented
                sourceComponent: RescueDialog { rescue: host.models.rescue }
            }
            SheetLoader {
                presented: host.showingBulkFilePicker
                sourceComponent: BulkFilePickerView { picker: host.models.bulkFilePicker }
            }
            SheetLoader {
                presented: host.showingShredConfirmation
                sourceComponent: ShredConfirmationDialog { dialog: host.models.shredConfirmation }
            }
            SheetLoader {
                presented: host.showingDeleteConfirmation
                sourceComponent: DeleteConfirmationSheet { dialog: host.models.deleteConfirmation }
            }
            SheetLoader {
                presented: host.models.recoveryDialogManager.isPresented
                sourceComponent: RecoveryDialog { manager: host.models.recoveryDialogManager }
            }
            SheetLoader {
                presented: host.models.preferences.showingCloseConfirmation
                sourceComponent: UnsavedChangesSheet { preferences: host.models.preferences }
            }
            SheetLoader {
                presented: host.models.preferencesPasswordInput.isPresented
                sourceComponent: PasswordInputDialog {
                    manager: host.models.preferencesPasswordInput
                    dialog: host.models.preferencesPasswordInputState
                }
            }
            SheetLoader {
                presented: host.models.preferencesConfirmation.isPresented
                sourceComponent: ConfirmationDialog { manager: host.models.preferencesConfirmation }
            }
            SheetLoader {
                presented: host.models.preferencesError.isPresented
                sourceComponent: ErrorDialog {
                    manager: host.models.preferencesError
                    onShowTroubleshooting: host.models.showDefaultTroubleshooting(manager)
                }
            }
            SheetLoader {
                presented: host.models.protectionMethodDialogManager.isPresented
                sourceComponent: ProtectionMethodDialog { manager: host.models.protectionMethodDialogManager }
            }
            SheetLoader {
                presented: host.models.passwordInputDialogManager.isPresented
                sourceComponent: PasswordInputDialog {
                    manager: host.models.passwordInputDialogManager
                    dialog: host.models.passwordInputState
                }
            }
            SheetLoader {
                presented: host.models.masterPasswordDialogManager.isPresented
                sourceComponent: MasterPasswordDialog { manager: host.models.masterPasswordDialogManager }
            }
            SheetLoader {
                presented: host.showingRemoveConfirmation
                sourceComponent: RemoveProtectionDialog { manager: host.models.removeProtectionDialogManager }
            }
            SheetLoader {
                presented: host.models.biometrics.isPrompting
                sourceComponent: TouchIDPrompt { manager: host.models.biometrics }
            }
            SheetLoader {
                presented: host.models.errorDialogManager.isPresented
                sourceComponent: ErrorDialog {
                    manager: host.models.errorDialogManager
                    onShowTroubleshooting: host.models.showDefaultTroubleshooting(manager)
                }
            }
            SheetLoader {
                presented: host.showingErrorSheet
                sourceComponent: ErrorDialogSheet { manager: host.models.errorDialogSheet }
            }
            SheetLoader {
                presented: host.models.menuBarErrorDialogManager.isPresented
                sourceComponent: ErrorDialog {
                    manager: host.models.menuBarErrorDialogManager
                    onShowTroubleshooting: host.models.showDefaultTroubleshooting(manager)
                }
            }
            SheetLoader {
                presented: host.models.confirmationDialogManager.isPresented
                sourceComponent: ConfirmationDialog { manager: host.models.confirmationDialogManager }
            }
        }
    }
}
