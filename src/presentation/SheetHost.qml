// SPDX-License-Identifier: GPL-3.0-or-later

pragma ComponentBehavior: Bound

import QtQuick
import Quillhaven
import Quillhaven.Controls
import Quillhaven.Dialogs

/// The sheets of a window, over its content. A question shows in one of the windows; what an operation does, in the
/// main one.
Item {
    id: host

    required property SheetModels models
    readonly property QuestionWindow place: models.questionWindow

    Component.onCompleted: place.add(Window.window)

    // Repeaters of one or none: a Loader of Qt 6.4 cannot make a bound component.
    Repeater {
        model: host.place.mainWindow === host.Window.window ? 1 : 0

        Item {
            anchors.fill: parent

            SheetLoader {
                presented: host.models.bulkProgress.isPresented
                sourceComponent: BulkProgressView { operation: host.models.bulkProgress }
            }
            SheetLoader {
                presented: host.models.shredProgress.isPresented
                sourceComponent: ShredProgressView { operation: host.models.shredProgress }
            }
        }
    }

    Repeater {
        model: host.place.window === host.Window.window ? 1 : 0

        Item {
            anchors.fill: parent

            SheetLoader {
                presented: host.models.bulkFilePicker.isPresented
                sourceComponent: BulkFilePickerView { picker: host.models.bulkFilePicker }
            }
            SheetLoader {
                presented: host.models.shredConfirmation.isPresented
                sourceComponent: ShredConfirmationDialog { dialog: host.models.shredConfirmation }
            }
            SheetLoader {
                presented: host.models.recovery.isPresented
                sourceComponent: RecoveryDialog { manager: host.models.recovery }
            }
            SheetLoader {
                presented: host.models.protectionMethod.isPresented
                sourceComponent: ProtectionMethodDialog { manager: host.models.protectionMethod }
            }
            SheetLoader {
                presented: host.models.passwordInput.isPresented
                sourceComponent: PasswordInputDialog {
                    manager: host.models.passwordInput
                    dialog: host.models.passwordInputState
                }
            }
            SheetLoader {
                presented: host.models.masterPassword.isPresented
                sourceComponent: MasterPasswordDialog { manager: host.models.masterPassword }
            }
            SheetLoader {
                presented: host.models.removeProtection.isPresented
                sourceComponent: RemoveProtectionDialog { manager: host.models.removeProtection }
            }
            SheetLoader {
                presented: host.models.biometrics.isPrompting
                sourceComponent: TouchIDPrompt { manager: host.models.biometrics }
            }
            SheetLoader {
                presented: host.models.error.isPresented
                sourceComponent: ErrorDialog {
                    manager: host.models.error
                    onShowTroubleshooting: host.models.showDefaultTroubleshooting()
                }
            }
            SheetLoader {
                presented: host.models.confirmation.isPresented
                sourceComponent: ConfirmationDialog { manager: host.models.confirmation }
            }
        }
    }
}
