// SPDX-License-Identifier: GPL-3.0-or-later

// The two dialogs in which a secret is typed. The secret must never reach the accessibility bus.

#include "DialogScene.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "settings/Settings.h"
#include "support/LogCapture.h"
#include "support/TestPlatform.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// All texts of accessibility events.
QStringList announced;

void recordEvent(QAccessibleEvent *event)
{
    if (event->type() == QAccessible::TextInserted) {
        announced += static_cast<QAccessibleTextInsertEvent *>(event)->textInserted();
    } else if (event->type() == QAccessible::TextRemoved) {
        announced += static_cast<QAccessibleTextRemoveEvent *>(event)->textRemoved();
    } else if (event->type() == QAccessible::TextUpdated) {
        announced += static_cast<QAccessibleTextUpdateEvent *>(event)->textInserted();
        announced += static_cast<QAccessibleTextUpdateEvent *>(event)->textRemoved();
    } else if (event->type() == QAccessible::ValueChanged) {
        announced += static_cast<QAccessibleValueChangeEvent *>(event)->value().toString();
    }
}

bool holds(const QStringList &texts, const char *secret)
{
    return std::any_of(texts.cbegin(), texts.cend(),
                       [secret](const QString &text) { return text.contains(QString::fromUtf8(secret)); });
}

class SecretDialogWindow : public ::testing::Test
{
protected:
    SecretDialogWindow()
    {
        announced.clear();
        QAccessible::installUpdateHandler(recordEvent);
    }
    ~SecretDialogWindow() override { QAccessible::installUpdateHandler(nullptr); }

    LogCapture log;
};

class MasterPasswordDialogWindow : public SecretDialogWindow
{
protected:
    MasterPasswordDialogWindow()
    {
        manager.onAuthenticate = [this](const QString &entered) { passwords += entered; };
        manager.onCancel = [this] { ++cancels; };
    }
    [[nodiscard]] bool open()
    {
        manager.setIsPresented(true);
        return scene.getsFocus("Master Password");
    }

    QStringList passwords;
    int cancels = 0;
    MasterPasswordDialogManager manager;
    DialogScene scene{QStringLiteral("MasterPasswordDialog { manager: scene.master }"),
                      {{QStringLiteral("master"), QVariant::fromValue(&manager)}}};
};

TEST_F(MasterPasswordDialogWindow, EmptyFieldDoesNothingOnReturnAndItsButtonIsDisabled)
{
    ASSERT_TRUE(open());
    EXPECT_FALSE(scene.find("Authenticate")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(passwords.isEmpty());
    EXPECT_TRUE(manager.isPresented());
    EXPECT_EQ(scene.tabRound(), (QStringList{QStringLiteral("Master Password"),
                                             QStringLiteral("Master Password toggle"), QStringLiteral("Cancel")}));
}

TEST_F(MasterPasswordDialogWindow, ReturnAuthenticatesOnceAndClearsTheField)
{
    ASSERT_TRUE(open());
    scene.type("Masterkey9");
    EXPECT_TRUE(scene.find("Authenticate")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_EQ(passwords, QStringList{QStringLiteral("Masterkey9")});
    EXPECT_TRUE(scene.shows("Authenticating..."));
    EXPECT_FALSE(scene.find("Authenticating...")->isEnabled());
    scene.type("again");
    scene.press(Qt::Key_Return);
    EXPECT_EQ(passwords.size(), 1);
}

TEST_F(MasterPasswordDialogWindow, ErrorIsShownAndReadOutAndTheNextAttemptClearsIt)
{
    ASSERT_TRUE(open());
    scene.type("wrong");
    scene.press(Qt::Key_Return);
    manager.showError(QStringLiteral("Incorrect password"));
    spinOnce();
    EXPECT_TRUE(scene.shows("Incorrect password"));
    EXPECT_TRUE(scene.heard().names.contains(QStringLiteral("Incorrect password")));
    EXPECT_TRUE(scene.getsFocus("Master Password"));
    scene.type("right");
    scene.press(Qt::Key_Return);
    EXPECT_FALSE(scene.shows("Incorrect password"));
    EXPECT_EQ(passwords, (QStringList{QStringLiteral("wrong"), QStringLiteral("right")}));
}

TEST_F(MasterPasswordDialogWindow, ReturnActivatesTheFocusedButton)
{
    ASSERT_TRUE(open());
    scene.type("Masterkey9");
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.shows("Hide"));
    EXPECT_TRUE(passwords.isEmpty());
    scene.press(Qt::Key_Tab);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(passwords.isEmpty());
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(MasterPasswordDialogWindow, CancelledSecretIsClearedImmediatelyAndTheFieldIsHiddenAtTheNextOpening)
{
    ASSERT_TRUE(open());
    scene.type("Masterkey9");
    scene.click("Show");
    EXPECT_TRUE(scene.holdsTypedText("Masterkey9"));
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
    EXPECT_FALSE(scene.holdsTypedText("Masterkey9"));
    ASSERT_TRUE(open());
    EXPECT_TRUE(scene.shows("Show"));
    EXPECT_FALSE(scene.find("Authenticate")->isEnabled());
}

TEST_F(MasterPasswordDialogWindow, TheNextQuestionInTheOpenDialogFindsItEmptyAndHidden)
{
    ASSERT_TRUE(open());
    scene.type("Masterkey9");
    scene.click("Show");
    EXPECT_TRUE(scene.holdsTypedText("Masterkey9"));
    ASSERT_TRUE(open()); // which is the same to the dialog as another question
    EXPECT_FALSE(scene.holdsTypedText("Masterkey9"));
    EXPECT_TRUE(scene.shows("Show"));
    EXPECT_FALSE(scene.find("Authenticate")->isEnabled());
}

TEST_F(MasterPasswordDialogWindow, SecretIsNeverReadOut)
{
    ASSERT_TRUE(open());
    scene.type("Masterkey9");
    const QStringList names = scene.heard().names;
    for (const char *name : {"Master Password Required", "Master Password", "Show", "Cancel", "Authenticate"}) {
        EXPECT_TRUE(names.contains(QString::fromUtf8(name))) << name;
    }
    EXPECT_FALSE(holds(scene.heard().texts, "Masterkey9"));
    scene.click("Show");
    EXPECT_TRUE(scene.shows("Hide"));
    EXPECT_FALSE(holds(scene.heard().texts, "Masterkey9"));
    scene.press(Qt::Key_Backtab);
    scene.type("M");
    EXPECT_FALSE(holds(scene.heard().texts, "Masterkey9"));
    EXPECT_FALSE(holds(announced, "M")) << qUtf8Printable(announced.join(QLatin1Char('|')));
}

class PasswordInputDialogWindow : public SecretDialogWindow
{
protected:
    PasswordInputDialogWindow()
    {
        manager.setTitle(QStringLiteral("Set Protection"));
        manager.setMessage(QStringLiteral("Enter a password to protect this item:"));
        manager.onConfirm = [this](const QString &entered) { passwords += entered; };
        manager.onCancel = [this] { ++cancels; };
    }
    [[nodiscard]] bool open(bool requiresConfirmation)
    {
        manager.setRequiresConfirmation(requiresConfirmation);
        manager.setIsPresented(true);
        return scene.getsFocus("Password");
    }
    void typeTwice(const char *first, const char *second)
    {
        scene.type(first);
        scene.press(Qt::Key_Tab);
        scene.press(Qt::Key_Tab);
        ASSERT_TRUE(scene.getsFocus("Confirm password"));
        scene.type(second);
    }

    QStringList passwords;
    int cancels = 0;
    TestPlatform services;
    PasswordInputDialogManager manager;
    PasswordInputDialogModel state{manager, services.defaults.standard()};
    DialogScene scene{QStringLiteral("PasswordInputDialog { manager: scene.input; dialog: scene.inputState }"),
                      {{QStringLiteral("input"), QVariant::fromValue(&manager)},
                       {QStringLiteral("inputState"), QVariant::fromValue(&state)}}};
};

TEST_F(PasswordInputDialogWindow, WithoutConfirmationThereIsOneFieldAndOneLetterUnlocks)
{
    ASSERT_TRUE(open(false));
    EXPECT_FALSE(scene.heard().names.contains(QStringLiteral("Confirm password")));
    EXPECT_FALSE(scene.find("Unlock")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(manager.isPresented());
    scene.type("a");
    EXPECT_TRUE(scene.find("Unlock")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_EQ(passwords, QStringList{QStringLiteral("a")});
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(PasswordInputDialogWindow, ProtectIsDisabledUntilBothFieldsAreFilled)
{
    ASSERT_TRUE(open(true));
    EXPECT_FALSE(scene.find("Protect")->isEnabled());
    scene.type("Abcdefg1");
    EXPECT_FALSE(scene.find("Protect")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(passwords.isEmpty());
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Tab);
    scene.type("Abcdefg1");
    EXPECT_TRUE(scene.find("Protect")->isEnabled());
    EXPECT_EQ(scene.tabRound(),
              (QStringList{QStringLiteral("Confirm password"), QStringLiteral("Confirm password toggle"),
                           QStringLiteral("Cancel"), QStringLiteral("Protect"), QStringLiteral("Password"),
                           QStringLiteral("Password toggle")}));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(passwords, QStringList{QStringLiteral("Abcdefg1")});
}

TEST_F(PasswordInputDialogWindow, ReturnTestsThePasswordOnce)
{
    ASSERT_TRUE(open(true));
    typeTwice("Abcdefg1", "Abcdefg2");
    log.clear();
    scene.press(Qt::Key_Return);
    EXPECT_EQ(log.lines().count(QStringLiteral("🔍 DEBUG: Protect button clicked")), 1);
}

TEST_F(PasswordInputDialogWindow, TwoStrongButDifferentPasswordsShowOnlyTheMismatch)
{
    ASSERT_TRUE(open(true));
    typeTwice("Abcdefg1", "Abcdefg2");
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.shows("Passwords don't match"));
    EXPECT_FALSE(scene.shows("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_TRUE(passwords.isEmpty());
}

TEST_F(PasswordInputDialogWindow, WeakPasswordListsTheMissingRequirements)
{
    ASSERT_TRUE(open(true));
    EXPECT_FALSE(scene.shows("Uppercase letter"));
    typeTwice("abc", "abc");
    for (const char *text :
         {"At least 8 characters, not met", "Uppercase letter, not met", "Lowercase letter, met", "Number, not met"}) {
        EXPECT_TRUE(scene.heard().names.contains(QString::fromUtf8(text))) << text;
    }
    const qreal width = scene.find("Protect")->width();
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(scene.shows("Password must be at least 8 characters with uppercase, lowercase, and numbers"));
    EXPECT_TRUE(passwords.isEmpty());
    scene.window()->grabWindow();
    EXPECT_EQ(scene.find("Protect")->width(), width) << "the sheet keeps its width";
}

TEST_F(PasswordInputDialogWindow, WithoutTheStrengthRuleAShortPasswordTypedTwiceIsAccepted)
{
    settings::enforceStrongPasswords.write(services.defaults.standard(), false);
    ASSERT_TRUE(open(true));
    typeTwice("abc", "abc");
    EXPECT_FALSE(scene.shows("Uppercase letter"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(passwords, QStringList{QStringLiteral("abc")});
}

TEST_F(PasswordInputDialogWindow, EachFieldHasItsOwnToggle)
{
    ASSERT_TRUE(open(true));
    scene.type("Abc");
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Space);
    EXPECT_TRUE(state.showPassword());
    EXPECT_FALSE(state.showConfirmPassword());
    EXPECT_TRUE(scene.shows("Hide"));
    EXPECT_TRUE(scene.shows("Show"));
    scene.press(Qt::Key_Space);
    EXPECT_FALSE(state.showPassword());
}

TEST_F(PasswordInputDialogWindow, ReturnOnCancelCancelsAndTheNextOpeningIsEmpty)
{
    ASSERT_TRUE(open(true));
    typeTwice("Abcdefg1", "Abcdefg1");
    scene.press(Qt::Key_Tab);
    scene.press(Qt::Key_Tab);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    scene.press(Qt::Key_Return);
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(passwords.isEmpty());
    EXPECT_FALSE(scene.holdsTypedText("Abcdefg1"));
    ASSERT_TRUE(open(true));
    EXPECT_FALSE(scene.find("Protect")->isEnabled());
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(cancels, 2);
}

TEST_F(PasswordInputDialogWindow, TheNextQuestionInTheOpenDialogFindsItEmptyWithTheFocusInTheFirstField)
{
    ASSERT_TRUE(open(true));
    typeTwice("Abcdefg1", "Abcdefg1");
    ASSERT_TRUE(open(true));
    EXPECT_FALSE(scene.holdsTypedText("Abcdefg1"));
    EXPECT_FALSE(scene.find("Protect")->isEnabled());
    scene.press(Qt::Key_Return);
    EXPECT_TRUE(passwords.isEmpty());
}

TEST_F(PasswordInputDialogWindow, SecretIsNeverReadOut)
{
    ASSERT_TRUE(open(true));
    typeTwice("Zwxyvut1", "Zwxyvut1");
    const QStringList names = scene.heard().names;
    for (const char *name : {"Set Protection", "Enter a password to protect this item:", "Password", "Confirm password",
                             "Show", "Cancel", "Protect"}) {
        EXPECT_TRUE(names.contains(QString::fromUtf8(name))) << name;
    }
    EXPECT_FALSE(holds(scene.heard().texts, "Zwxyvut1"));
    state.setShowPassword(true);
    state.setShowConfirmPassword(true);
    spinOnce();
    EXPECT_FALSE(scene.shows("Show"));
    EXPECT_FALSE(holds(scene.heard().texts, "Zwxyvut1"));
    scene.type("Z");
    EXPECT_FALSE(holds(announced, "Z")) << qUtf8Printable(announced.join(QLatin1Char('|')));
}

} // namespace
