// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick
import QtQuick.Layouts
import Quillhaven.Controls
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
    readonly property bool hasRoomForDropArea: height >= Metrics.roomyWindow

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
            spacing: view.height < Metrics.compactWindow ? Spacing.md : Spacing.lg

            SearchFilterBar {
                Layout.fillWidth: true
                Layout.fillHeight: false
                dashboard: view.dashboard
                onListWanted: itemsList.takeFocus()
            }

            DashboardStatistics {
                Layout.fillWidth: true
                Layout.fillHeight: false
                isCompact: view.height < Metrics.compactWindow
                // Where there is little room, the list needs it for what is selected.
                visible: !isCompact || view.dashboard.selection.selectedCount === 0
                dashboard: view.dashboard
            }

            ProtectedItemsList {
                id: itemsList

                Layout.fillWidth: true
                Layout.fillHeight: true
                dashboard: view.dashboard
            }

            DropAreaView {
                Layout.fillWidth: true
                visible: view.hasRoomForDropArea
                isTargeted: dropTarget.containsDrag
            }
        }
    }

    DropArea {
        id: dropTarget

        anchors.fill: parent
        enabled: !sheets.isShowing
        keys: ["text/uri-list"]
        onDropped: (drop) => {
            if (drop.hasUrls) {
                drop.accept(Qt.CopyAction)
                view.dashboard.onDrop(drop.urls)
            }
        }
    }

    DropAreaView {
        anchors.fill: parent
        anchors.margins: Spacing.xl
        visible: dropTarget.containsDrag && !view.hasRoomForDropArea
        isTargeted: true
        color: Colors.modalBackground
    }

    Item {
        id: sheets

        readonly property bool isShowing: Array.from(children).some(loader => loader.presented)

        anchors.fill: parent

        SheetLoader {
            presented: view.dashboard.bulk.picker.isPresented
            sourceComponent: BulkFilePickerView { picker: view.dashboard.bulk.picker }
        }
        SheetLoader {
            presented: view.dashboard.bulk.progress.isPresented
            sourceComponent: BulkProgressView { operation: view.dashboard.bulk.progress }
        }
        SheetLoader {
            presented: view.dashboard.shredding.confirmation.isPresented
            sourceComponent: ShredConfirmationDialog { dialog: view.dashboard.shredding.confirmation }
        }
        SheetLoader {
            presented: view.dashboard.shredding.progress.isPresented
            sourceComponent: ShredProgressView { operation: view.dashboard.shredding.progress }
        }
        SheetLoader {
            presented: view.dashboard.backup.recoveryDialogManager.isPresented
            sourceComponent: RecoveryDialog { manager: view.dashboard.backup.recoveryDialogManager }
        }
        SheetLoader {
            presented: view.protectionMethodDialogManager.isPresented
            sourceComponent: ProtectionMethodDialog { manager: view.protectionMethodDialogManager }
        }
        SheetLoader {
            presented: view.passwordInputDialogManager.isPresented
            sourceComponent: PasswordInputDialog {
                manager: view.passwordInputDialogManager
                dialog: view.passwordInputState
            }
        }
        SheetLoader {
            presented: view.masterPasswordDialogManager.isPresented
            sourceComponent: MasterPasswordDialog { manager: view.masterPasswordDialogManager }
        }
        SheetLoader {
            presented: view.dashboard.removeProtectionDialogManager.isPresented
            sourceComponent: RemoveProtectionDialog { manager: view.dashboard.removeProtectionDialogManager }
        }
        SheetLoader {
            presented: view.biometrics.isPrompting
            sourceComponent: TouchIDPrompt { manager: view.biometrics }
        }
        SheetLoader {
            presented: view.dashboard.errorDialogManager.isPresented
            sourceComponent: ErrorDialog {
                manager: view.dashboard.errorDialogManager
                onShowTroubleshooting: view.dashboard.showDefaultTroubleshooting()
            }
        }
        SheetLoader {
            presented: view.confirmationDialogManager.isPresented
            sourceComponent: ConfirmationDialog { manager: view.confirmationDialogManager }
        }
    }
}
