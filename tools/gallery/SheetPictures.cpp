// SPDX-License-Identifier: GPL-3.0-or-later

// Pictures of each sheet, over a window with two buttons.

#include "Picture.h"
#include "presentation/dialogs/DialogScene.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "presentation/dialogs/BulkFilePickerModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RecoveryDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "presentation/dialogs/StorageNote.h"
#include "support/FakeFilePanels.h"
#include "support/TestPlatform.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

QStringList manyNames()
{
    QStringList names;
    for (int number = 1; number <= 12; ++number) {
        names.append(QStringLiteral("Contract %1.pdf").arg(number));
    }
    return names;
}

} // namespace

TEST(SheetPictures, Confirmations)
{
    ConfirmationDialogManager manager;
    DialogScene scene(QStringLiteral("ConfirmationDialog { manager: scene.confirmation }"),
                      {{QStringLiteral("confirmation"), QVariant::fromValue(&manager)}});
    manager.setTitle(QStringLiteral("Set Protection for 3 Items"));
    manager.setMessage(QStringLiteral("These items will be protected with Touch ID."));
    manager.setConfirmTitle(QStringLiteral("Protect"));
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Protect"));
    draw(*scene.window(), QStringLiteral("confirmation"));
    manager.setIsDestructive(true);
    manager.setTitle(QStringLiteral("Reset all settings?"));
    manager.setConfirmTitle(QStringLiteral("Reset"));
    draw(*scene.window(), QStringLiteral("confirmation-destructive"));
}

TEST(SheetPictures, MethodAndRemoval)
{
    ProtectionMethodDialogManager method;
    RemoveProtectionDialogManager removal;
    DialogScene scene(QStringLiteral("ProtectionMethodDialog { manager: scene.method }\n"
                                     "RemoveProtectionDialog { manager: scene.removal }"),
                      {{QStringLiteral("method"), QVariant::fromValue(&method)},
                       {QStringLiteral("removal"), QVariant::fromValue(&removal)}});
    method.setTitle(QStringLiteral("Protect will.pdf"));
    method.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Password Protection"));
    draw(*scene.window(), QStringLiteral("method"));
    method.cancel();
    removal.show(QStringLiteral("will.pdf"), {}, {});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    draw(*scene.window(), QStringLiteral("removal"));
}

TEST(SheetPictures, Errors)
{
    ErrorDialogManager manager;
    DialogScene scene(QStringLiteral("ErrorDialog { manager: scene.error }"),
                      {{QStringLiteral("error"), QVariant::fromValue(&manager)}});
    manager.showErrorWithAutoTroubleshooting(
        QStringLiteral("You don't have permission to move \"a.txt\" to \"quillhaven\"."), QStringLiteral("Error"));
    ASSERT_TRUE(scene.getsFocus("OK"));
    draw(*scene.window(), QStringLiteral("error-hint"));
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("The disk is full."), QStringLiteral("Error"));
    draw(*scene.window(), QStringLiteral("error"));
}

TEST(SheetPictures, MasterPassword)
{
    MasterPasswordDialogManager manager;
    DialogScene scene(QStringLiteral("MasterPasswordDialog { manager: scene.master }"),
                      {{QStringLiteral("master"), QVariant::fromValue(&manager)}});
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Master Password"));
    draw(*scene.window(), QStringLiteral("master"));
    scene.type("Masterkey9");
    scene.press(Qt::Key_Return);
    draw(*scene.window(), QStringLiteral("master-busy"));
    manager.showError(QStringLiteral("Incorrect password"));
    draw(*scene.window(), QStringLiteral("master-error"));
}

TEST(SheetPictures, PasswordInput)
{
    TestPlatform services;
    PasswordInputDialogManager manager;
    PasswordInputDialogModel state(manager, services.defaults.standard());
    DialogScene scene(QStringLiteral("PasswordInputDialog { manager: scene.input; dialog: scene.inputState }"),
                      {{QStringLiteral("input"), QVariant::fromValue(&manager)},
                       {QStringLiteral("inputState"), QVariant::fromValue(&state)}});
    manager.setTitle(QStringLiteral("Set Protection"));
    manager.setMessage(QStringLiteral("Enter a password to protect this item:"));
    manager.setRequiresConfirmation(true);
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Password"));
    scene.type("Abc");
    state.setShowPassword(true);
    state.setConfirmPassword(QStringLiteral("Abd"));
    state.confirm();
    draw(*scene.window(), QStringLiteral("password-new"));
}

TEST(SheetPictures, ShredConfirmation)
{
    ShredConfirmationDialogModel dialog;
    DialogScene scene(QStringLiteral("ShredConfirmationDialog { dialog: scene.shred }"),
                      {{QStringLiteral("shred"), QVariant::fromValue(&dialog)}});
    dialog.show(manyNames());
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    dialog.setHasReadWarning(true);
    dialog.setConfirmationText(QStringLiteral("SHRED PERMANENTLY"));
    drawInBothSizes(*scene.window(), QStringLiteral("shred-confirmation"));
    dialog.setStorageNote(storageNote({.isSolidState = true, .isUnencrypted = true}));
    drawInBothSizes(*scene.window(), QStringLiteral("shred-confirmation-note"));
    dialog.setStorageNote(storageNote(
        {.isSolidState = true, .isCopyOnWrite = true, .isSynced = true, .hasSnapshots = true, .isUnencrypted = true}));
    drawInBothSizes(*scene.window(), QStringLiteral("shred-confirmation-long-note"));
}

TEST(SheetPictures, ShredProgress)
{
    OperationProgress operation;
    DialogScene scene(QStringLiteral("ShredProgressView { operation: scene.operation }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    operation.show();
    operation.report(QStringLiteral("Shredding original file: Contract 1.pdf"), 0.42);
    drawInBothSizes(*scene.window(), QStringLiteral("shred-progress"));
}

TEST(SheetPictures, BulkFilePicker)
{
    FakeFilePanels panels;
    BulkFilePickerModel picker(panels, [](const QStringList &paths) { return paths; });
    DialogScene scene(QStringLiteral("BulkFilePickerView { picker: scene.picker }"),
                      {{QStringLiteral("picker"), QVariant::fromValue(&picker)}});
    picker.show();
    draw(*scene.window(), QStringLiteral("bulk-picker-empty"));
    QStringList paths{QStringLiteral("/tmp")};
    for (const QString &name : manyNames()) {
        paths.append(QStringLiteral("/papers/") + name);
    }
    picker.handleFileSelection(paths);
    drawInBothSizes(*scene.window(), QStringLiteral("bulk-picker"));
}

TEST(SheetPictures, BulkProgress)
{
    OperationProgress operation;
    DialogScene scene(QStringLiteral("BulkProgressView { operation: scene.operation }"),
                      {{QStringLiteral("operation"), QVariant::fromValue(&operation)}});
    operation.show();
    operation.report(QStringLiteral("Locking will.pdf..."), 0.5);
    drawInBothSizes(*scene.window(), QStringLiteral("bulk-progress"));
}

TEST(SheetPictures, Recovery)
{
    RecoveryDialogManager manager;
    DialogScene scene(QStringLiteral("RecoveryDialog { manager: scene.recovery }"),
                      {{QStringLiteral("recovery"), QVariant::fromValue(&manager)}});
    manager.show([](const QString &) {}, [] {});
    drawInBothSizes(*scene.window(), QStringLiteral("recovery"));
}

TEST(SheetPictures, LongError)
{
    ErrorDialogManager manager;
    DialogScene scene(QStringLiteral("ErrorDialog { manager: scene.error }"),
                      {{QStringLiteral("error"), QVariant::fromValue(&manager)}});
    const QString failures = manyNames().join(QStringLiteral(": The disk is full.\n")).repeated(4);
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("Some items failed to unlock:\n") + failures,
                                             QStringLiteral("Error"));
    drawInBothSizes(*scene.window(), QStringLiteral("error-long"));
}
