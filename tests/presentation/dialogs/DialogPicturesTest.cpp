// SPDX-License-Identifier: GPL-3.0-or-later

// Pictures of each dialog, to be looked at: QUILLHAVEN_SCREENSHOTS names their folder, QT_SCALE_FACTOR another scale.

#include "DialogScene.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "support/TestPlatform.h"

using namespace quillhaven;
using namespace quillhaven::testing;

TEST(DialogPictures, Confirmations)
{
    ConfirmationDialogManager manager;
    DialogScene scene(QStringLiteral("ConfirmationDialog { manager: scene.confirmation }"),
                      {{QStringLiteral("confirmation"), QVariant::fromValue(&manager)}});
    manager.setTitle(QStringLiteral("Set Protection for 3 Items"));
    manager.setMessage(QStringLiteral("These items will be protected with Touch ID."));
    manager.setConfirmTitle(QStringLiteral("Protect"));
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Protect"));
    scene.draw(QStringLiteral("confirmation"));
    manager.setIsDestructive(true);
    manager.setTitle(QStringLiteral("Reset all settings?"));
    manager.setConfirmTitle(QStringLiteral("Reset"));
    scene.draw(QStringLiteral("confirmation-destructive"));
}

TEST(DialogPictures, MethodAndRemoval)
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
    scene.draw(QStringLiteral("method"));
    method.cancel();
    removal.show(QStringLiteral("will.pdf"), {}, {});
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.draw(QStringLiteral("removal"));
}

TEST(DialogPictures, Errors)
{
    ErrorDialogManager manager;
    DialogScene scene(QStringLiteral("ErrorDialog { manager: scene.error }"),
                      {{QStringLiteral("error"), QVariant::fromValue(&manager)}});
    manager.showErrorWithAutoTroubleshooting(
        QStringLiteral("You don't have permission to move \"a.txt\" to \"quillhaven\"."), QStringLiteral("Error"));
    ASSERT_TRUE(scene.getsFocus("OK"));
    scene.draw(QStringLiteral("error-hint"));
    manager.showErrorWithAutoTroubleshooting(QStringLiteral("The disk is full."), QStringLiteral("Error"));
    scene.draw(QStringLiteral("error"));
}

TEST(DialogPictures, MasterPassword)
{
    MasterPasswordDialogManager manager;
    DialogScene scene(QStringLiteral("MasterPasswordDialog { manager: scene.master }"),
                      {{QStringLiteral("master"), QVariant::fromValue(&manager)}});
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Master Password"));
    scene.draw(QStringLiteral("master"));
    scene.type("Masterkey9");
    scene.press(Qt::Key_Return);
    scene.draw(QStringLiteral("master-busy"));
    manager.showError(QStringLiteral("Incorrect password"));
    scene.draw(QStringLiteral("master-error"));
}

TEST(DialogPictures, PasswordInput)
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
    scene.draw(QStringLiteral("password-new"));
}
