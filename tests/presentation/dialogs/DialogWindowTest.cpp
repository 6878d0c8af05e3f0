// SPDX-License-Identifier: GPL-3.0-or-later

// Each dialog with its real manager in a real window, driven by key presses and checked by its texts.

#include "DialogScene.h"

#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/DeleteConfirmationModel.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "presentation/dialogs/ErrorDialogSheetModel.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "support/FakeBiometricAuthenticator.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString confirmationQml = QStringLiteral("ConfirmationDialog { manager: scene.confirmation }");

/// A confirmation dialog that records the user's choice.
class ConfirmationDialogWindow : public ::testing::Test
{
protected:
    ConfirmationDialogWindow()
    {
        manager.setTitle(QStringLiteral("Reset settings?"));
        manager.setMessage(QStringLiteral("Your settings go back to what they were at first."));
        manager.onConfirm = [this] { chosen += QStringLiteral("confirm"); };
        manager.onCancel = [this] { chosen += QStringLiteral("cancel"); };
    }
    /// Shows the question, and returns whether this button gets the keyboard focus.
    bool opensAt(const char *button)
    {
        manager.setIsPresented(true);
        return scene.getsFocus(button);
    }

    QStringList chosen;
    ConfirmationDialogManager manager;
    DialogScene scene{confirmationQml, {{QStringLiteral("confirmation"), QVariant::fromValue(&manager)}}};
};

TEST_F(ConfirmationDialogWindow, ReturnConfirmsAndTheFocusIsReturned)
{
    ASSERT_TRUE(opensAt("Confirm"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(chosen, QStringList{QStringLiteral("confirm")});
    EXPECT_FALSE(manager.isPresented());
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(ConfirmationDialogWindow, EscapeCancels)
{
    ASSERT_TRUE(opensAt("Confirm"));
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(chosen, QStringList{QStringLiteral("cancel")});
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(ConfirmationDialogWindow, EveryOpeningShowsTheFocusRing)
{
    scene.window()->activeFocusItem()->setFocus(false); // as in a window in which no key was pressed yet
    for (int opening = 1; opening <= 2; ++opening) {
        ASSERT_TRUE(opensAt("Confirm"));
        EXPECT_TRUE(scene.showsRing()) << opening;
        scene.press(Qt::Key_Escape);
    }
}

TEST_F(ConfirmationDialogWindow, FocusIsReturnedWithItsRing)
{
    scene.click("Also behind");
    ASSERT_TRUE(scene.getsFocus("Also behind"));
    ASSERT_TRUE(opensAt("Confirm"));
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.getsFocus("Also behind"));
    EXPECT_FALSE(scene.showsRing());

    scene.press(Qt::Key_Backtab);
    ASSERT_TRUE(scene.getsFocus("Behind"));
    ASSERT_TRUE(opensAt("Confirm"));
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.getsFocus("Behind"));
    EXPECT_TRUE(scene.showsRing());
}

TEST_F(ConfirmationDialogWindow, ReturnOnTheFocusedCancelButtonCancels)
{
    ASSERT_TRUE(opensAt("Confirm"));
    scene.press(Qt::Key_Tab);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(chosen, QStringList{QStringLiteral("cancel")});
}

TEST_F(ConfirmationDialogWindow, TabStaysInsideInBothDirections)
{
    ASSERT_TRUE(opensAt("Confirm"));
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("Confirm"), QStringLiteral("Cancel")}));
    EXPECT_EQ(scene.tabRound(Qt::Key_Backtab), (QStringList{QStringLiteral("Confirm"), QStringLiteral("Cancel")}));
}

TEST_F(ConfirmationDialogWindow, DestructiveQuestionShowsATriangleAndStartsAtCancel)
{
    manager.setIsDestructive(true);
    ASSERT_TRUE(opensAt("Cancel"));
    EXPECT_TRUE(scene.findSymbol("exclamationmark.triangle"));
    EXPECT_FALSE(scene.findSymbol("questionmark.circle"));
}

TEST_F(ConfirmationDialogWindow, HarmlessQuestionShowsAQuestionMark)
{
    ASSERT_TRUE(opensAt("Confirm"));
    EXPECT_TRUE(scene.findSymbol("questionmark.circle"));
    EXPECT_FALSE(scene.findSymbol("exclamationmark.triangle"));
}

TEST_F(ConfirmationDialogWindow, WithoutACancelButtonThereIsOneButton)
{
    manager.setShowCancelButton(false);
    manager.setConfirmTitle(QStringLiteral("OK"));
    ASSERT_TRUE(opensAt("OK"));
    EXPECT_FALSE(scene.shows("Cancel"));
    EXPECT_EQ(scene.tabRound(), QStringList{QStringLiteral("OK")});
}

TEST_F(ConfirmationDialogWindow, ButtonsAreAtLeast120Wide)
{
    ASSERT_TRUE(opensAt("Confirm"));
    scene.window()->grabWindow();
    EXPECT_GE(scene.find("Confirm")->width(), 120);
    EXPECT_GE(scene.find("Cancel")->width(), 120);
}

TEST_F(ConfirmationDialogWindow, ClickOutsideTheSheetDoesNothing)
{
    ASSERT_TRUE(opensAt("Confirm"));
    scene.click("Also behind");
    EXPECT_TRUE(manager.isPresented());
    EXPECT_TRUE(scene.getsFocus("Confirm"));
    scene.click("Confirm");
    EXPECT_EQ(chosen, QStringList{QStringLiteral("confirm")});
}

TEST_F(ConfirmationDialogWindow, ScreenReaderReadsTheTextsAndTheButtons)
{
    ASSERT_TRUE(opensAt("Confirm"));
    const QStringList names = scene.heard().names;
    for (const QString &name : {manager.title(), manager.message(), manager.confirmTitle(), manager.cancelTitle()}) {
        EXPECT_TRUE(names.contains(name)) << qUtf8Printable(name);
    }
}

TEST(ProtectionMethodDialogWindow, CardsAreReachedAndPressedWithTheKeyboard)
{
    ProtectionMethodDialogManager manager;
    manager.setTitle(QStringLiteral("Protect will.pdf"));
    QStringList chosen;
    manager.onPasswordProtection = [&] { chosen += QStringLiteral("password"); };
    manager.onTouchIDProtection = [&] { chosen += QStringLiteral("touch"); };
    manager.onCancel = [&] { chosen += QStringLiteral("cancel"); };
    DialogScene scene(QStringLiteral("ProtectionMethodDialog { manager: scene.method }"),
                      {{QStringLiteral("method"), QVariant::fromValue(&manager)}});
    const auto open = [&] {
        manager.setIsPresented(true);
        return scene.getsFocus("Password Protection");
    };
    ASSERT_TRUE(open());
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("Password Protection"),
                                             QStringLiteral("Touch ID Protection"), QStringLiteral("Cancel")}));
    for (const QString &name :
         {QStringLiteral("Protect will.pdf"), QStringLiteral("Choose how to lock this file:"),
          QStringLiteral("Password Protection"), QStringLiteral("Touch ID Protection"), QStringLiteral("Cancel")}) {
        EXPECT_TRUE(scene.heard().names.contains(name)) << qUtf8Printable(name);
    }
    EXPECT_TRUE(scene.shows("Secure with a custom password"));
    EXPECT_TRUE(scene.shows("Secure with biometric authentication"));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(open());
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Space);
    ASSERT_TRUE(open());
    scene.press(Qt::Key_Backtab);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(open());
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(open());
    scene.click("Touch ID Protection");
    EXPECT_EQ(chosen.join(QLatin1Char(' ')), QStringLiteral("password touch cancel cancel touch"));
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST(RemoveProtectionDialogWindow, StartsAtCancelAndNamesTheItem)
{
    RemoveProtectionDialogManager manager;
    QStringList chosen;
    DialogScene scene(QStringLiteral("RemoveProtectionDialog { manager: scene.removal }"),
                      {{QStringLiteral("removal"), QVariant::fromValue(&manager)}});
    const auto open = [&] {
        manager.show(
            QStringLiteral("will.pdf"), [&] { chosen += QStringLiteral("remove"); },
            [&] { chosen += QStringLiteral("cancel"); });
        return scene.getsFocus("Cancel");
    };
    ASSERT_TRUE(open());
    EXPECT_TRUE(scene.findSymbol("folder.badge.minus"));
    EXPECT_TRUE(scene.heard().names.contains(manager.message()));
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("Cancel"), QStringLiteral("Remove Protection")}));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(open());
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(open());
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(chosen.join(QLatin1Char(' ')), QStringLiteral("cancel remove cancel"));
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST(TouchIDPromptWindow, ShowsTheReasonAndTheHintAndEscapeCancels)
{
    FakeBiometricAuthenticator biometrics;
    biometrics.waitsForFinger = true;
    DialogScene scene(QStringLiteral("TouchIDPrompt { manager: scene.biometrics }"),
                      {{QStringLiteral("biometrics"), QVariant::fromValue<QObject *>(&biometrics)}});
    const RunningTask<bool> evaluation(biometrics.evaluatePolicy(QStringLiteral("Unlock will.pdf")));
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    for (const char *text : {"Touch ID", "Unlock will.pdf", "Place your finger on the reader"}) {
        EXPECT_TRUE(scene.heard().names.contains(QString::fromUtf8(text))) << text;
    }
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(biometrics.isPrompting());
    EXPECT_FALSE(evaluation.wait());
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

/// The error dialog, and the confirmation dialog that it opens.
class ErrorDialogWindow : public ::testing::Test
{
protected:
    void show(const char *message)
    {
        manager.showErrorWithAutoTroubleshooting(QString::fromUtf8(message), QStringLiteral("Lock Failed"));
        ASSERT_TRUE(scene.getsFocus("OK"));
    }

    ErrorDialogManager manager;
    ConfirmationDialogManager confirmation;
    DialogScene scene{QStringLiteral("ErrorDialog { manager: scene.error }") + confirmationQml,
                      {{QStringLiteral("error"), QVariant::fromValue(&manager)},
                       {QStringLiteral("confirmation"), QVariant::fromValue(&confirmation)}}};
};

TEST_F(ErrorDialogWindow, ReturnAndEscapeHideTheError)
{
    show("The disk is full.");
    EXPECT_FALSE(scene.shows("Troubleshooting"));
    EXPECT_TRUE(scene.heard().names.contains(QStringLiteral("The disk is full.")));
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(manager.isPresented());
    ASSERT_TRUE(scene.getsFocus("Behind"));
    show("The disk is full.");
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(manager.isPresented());
    EXPECT_EQ(manager.errorTitle(), QStringLiteral("Error"));
}

TEST_F(ErrorDialogWindow, HintIsShownInABoxWithAButton)
{
    show("Permission denied.");
    EXPECT_TRUE(scene.findSymbol("lightbulb.fill"));
    EXPECT_TRUE(scene.shows("Troubleshooting"));
    EXPECT_TRUE(scene.heard().names.contains(manager.troubleshootingMessage()));
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("OK"), QStringLiteral("Troubleshooting")}));
}

TEST_F(ErrorDialogWindow, LaterSheetIsOnTopAndReturnsTheFocusToTheErrorBelow)
{
    show("Permission denied.");
    manager.showDefaultTroubleshooting(&confirmation);
    spinOnce();
    ASSERT_TRUE(scene.getsFocus("OK"));
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("OK"), QString()}));
    scene.press(Qt::Key_Escape);
    EXPECT_FALSE(confirmation.isPresented());
    EXPECT_TRUE(manager.isPresented());
    ASSERT_TRUE(scene.getsFocus("OK"));
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("OK"), QStringLiteral("Troubleshooting")}));
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(ErrorDialogWindow, ErrorOverAQuestionThatClosesFirstStillReturnsTheFocus)
{
    confirmation.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Confirm"));
    show("The disk is full.");
    EXPECT_EQ(scene.tabRound(), QStringList{QStringLiteral("OK")});
    confirmation.setIsPresented(false);
    spinOnce();
    ASSERT_TRUE(scene.getsFocus("OK"));
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST(ErrorDialogSheetWindow, HintOnlyForPermissionAndAccess)
{
    ErrorDialogSheetModel model;
    DialogScene scene(QStringLiteral("ErrorDialogSheet { manager: scene.model }"),
                      {{QStringLiteral("model"), QVariant::fromValue(&model)}});
    for (const auto &[message, hasHint] :
         {std::pair{"No PERMISSION.", true}, {"No Access.", true}, {"It was denied.", false}, {"", false}}) {
        model.show(QString::fromUtf8(message));
        ASSERT_TRUE(scene.getsFocus("OK"));
        EXPECT_EQ(scene.shows("Show Troubleshooting"), hasHint) << message;
        EXPECT_EQ(scene.shows("Try closing any applications that might be using this file, or move it to a different "
                              "location."),
                  hasHint);
    }
}

TEST(ErrorDialogSheetWindow, OkCallsItsActionAndClosesTheSheet)
{
    ErrorDialogSheetModel model;
    DialogScene scene(QStringLiteral("ErrorDialogSheet { manager: scene.model }"),
                      {{QStringLiteral("model"), QVariant::fromValue(&model)}});
    int calls = 0;
    model.onOK = [&calls] { ++calls; };
    model.show(QStringLiteral("The disk is full."));
    ASSERT_TRUE(scene.getsFocus("OK"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(model.isPresented());
}

TEST(DeleteConfirmationWindow, ReturnCancelsAndEachButtonCallsItsAction)
{
    DeleteConfirmationModel model;
    DialogScene scene(QStringLiteral("DeleteConfirmationSheet { dialog: scene.model }"),
                      {{QStringLiteral("model"), QVariant::fromValue(&model)}});
    QStringList calls;
    model.onSecureDelete = [&calls] { calls.append(QStringLiteral("shred")); };
    model.onMoveToTrash = [&calls] { calls.append(QStringLiteral("trash")); };
    model.onCancel = [&calls] { calls.append(QStringLiteral("cancel")); };
    for (const char *button : {"Cancel", "Secure Delete", "Move to Trash"}) {
        model.show(QStringLiteral("will.pdf"), true);
        ASSERT_TRUE(scene.getsFocus("Cancel"));
        EXPECT_TRUE(scene.shows("Secure delete \"will.pdf\"?"));
        EXPECT_TRUE(scene.shows("This will permanently erase the encrypted file."));
        EXPECT_TRUE(scene.shows("This action cannot be undone."));
        EXPECT_EQ(scene.sheet()->width(), 400);
        while (scene.focused() != QString::fromUtf8(button)) {
            scene.press(Qt::Key_Tab);
        }
        scene.press(Qt::Key_Return);
        EXPECT_FALSE(model.isPresented());
    }
    EXPECT_EQ(calls, (QStringList{QStringLiteral("cancel"), QStringLiteral("shred"), QStringLiteral("trash")}));
}

} // namespace
