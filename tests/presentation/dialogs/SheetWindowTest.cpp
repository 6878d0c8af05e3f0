// SPDX-License-Identifier: GPL-3.0-or-later

// What all sheets have in common: keyboard, pointer, screen reader.

#include "DialogScene.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ErrorDialogManager.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A question and an error, either of which can be on top.
class SheetWindow : public ::testing::Test
{
protected:
    SheetWindow()
    {
        question.setTitle(QStringLiteral("Reset settings?"));
        question.setMessage(QStringLiteral("Your settings go back to what they were at first."));
    }
    bool ask()
    {
        question.setIsPresented(true);
        return scene.getsFocus("Confirm");
    }
    void showError()
    {
        error.showErrorWithAutoTroubleshooting(QStringLiteral("The disk is full."), QStringLiteral("Error"));
    }
    /// Focuses the button "Behind" so that its focus ring is shown.
    void tabToBehind()
    {
        scene.press(Qt::Key_Tab);
        scene.press(Qt::Key_Backtab);
        ASSERT_TRUE(scene.getsFocus("Behind"));
        ASSERT_TRUE(scene.showsRing());
    }
    static void activate(QWindow &window)
    {
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    ConfirmationDialogManager question;
    ErrorDialogManager error;
    DialogScene scene{
        QStringLiteral("ConfirmationDialog { manager: scene.question }\nErrorDialog { manager: scene.error }"),
        {{QStringLiteral("question"), QVariant::fromValue(&question)},
         {QStringLiteral("error"), QVariant::fromValue(&error)}}};
};

TEST_F(SheetWindow, FocusIsReturnedWithItsRingAfterASequenceOfSheets)
{
    tabToBehind();
    ASSERT_TRUE(ask());
    question.cancel();
    showError(); // while the question fades out
    ASSERT_TRUE(scene.getsFocus("OK"));
    EXPECT_TRUE(scene.showsRing());
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.getsFocus("Behind"));
    EXPECT_TRUE(scene.showsRing());
}

TEST_F(SheetWindow, FocusIsReturnedWithItsRingThroughTwoStackedSheets)
{
    tabToBehind();
    ASSERT_TRUE(ask());
    scene.press(Qt::Key_Tab);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    showError();
    ASSERT_TRUE(scene.getsFocus("OK"));
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.getsFocus("Cancel"));
    EXPECT_TRUE(scene.showsRing());
    scene.press(Qt::Key_Escape);
    ASSERT_TRUE(scene.getsFocus("Behind"));
    EXPECT_TRUE(scene.showsRing());
}

TEST_F(SheetWindow, FocusIsReturnedBeforeTheTransitionEnds)
{
    ASSERT_TRUE(ask());
    question.cancel();
    EXPECT_EQ(scene.focused(), QStringLiteral("Behind"));
}

TEST_F(SheetWindow, SheetPresentedAgainWhileItFadesOutHasTheFocusAndItsRing)
{
    ASSERT_TRUE(ask());
    scene.press(Qt::Key_Tab);
    question.setIsPresented(false);
    ASSERT_TRUE(ask());
    EXPECT_TRUE(scene.showsRing());
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(SheetWindow, SheetClosedWhileAnotherWindowIsActiveReturnsTheFocus)
{
    ASSERT_TRUE(ask());
    QQuickWindow other;
    other.show();
    activate(other);
    question.cancel();
    activate(*scene.window());
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(SheetWindow, SheetOpenedWhileAnotherWindowIsActiveHasTheFocusAndReturnsIt)
{
    QQuickWindow other;
    other.show();
    activate(other);
    question.setIsPresented(true);
    activate(*scene.window());
    ASSERT_TRUE(scene.getsFocus("Confirm"));
    scene.press(Qt::Key_Escape);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

TEST_F(SheetWindow, PointerDoesNotReachTheWindowBehind)
{
    const QQuickItem *behind = scene.find("Behind");
    const QPoint place = behind->mapToScene({behind->width() / 2, behind->height() / 2}).toPoint();
    QTest::mouseMove(scene.window(), place);
    ASSERT_TRUE(spinUntil([&] { return behind->property("hovered").toBool(); }));
    QTest::mouseMove(scene.window(), QPoint(600, 450));
    ASSERT_TRUE(ask());
    QTest::mouseMove(scene.window(), place);
    scene.window()->grabWindow();
    spinOnce();
    EXPECT_FALSE(behind->property("hovered").toBool());
}

TEST_F(SheetWindow, ScreenReaderReadsTheTitleAndMessageOfAShownDialog)
{
    const auto dialogs = [this] {
        QStringList all;
        const QAccessibleInterface *window = QAccessible::queryAccessibleInterface(scene.window());
        for (int index = 0; index < window->childCount(); ++index) {
            const QAccessibleInterface *child = window->child(index);
            if (child->role() == QAccessible::Dialog && !child->state().invisible) {
                all += child->text(QAccessible::Name) + QLatin1Char('|') + child->text(QAccessible::Description);
            }
        }
        return all;
    };
    EXPECT_TRUE(dialogs().isEmpty());
    ASSERT_TRUE(ask());
    EXPECT_EQ(dialogs().join(QLatin1Char(';')), question.title() + QLatin1Char('|') + question.message());
    question.cancel();
    EXPECT_TRUE(spinUntil([&] { return dialogs().isEmpty(); }));
}

TEST(SheetWindowWithSecret, EscapeStillCancelsIfTheFocusedControlIsDisabled)
{
    MasterPasswordDialogManager manager;
    manager.onAuthenticate = [](const QString &) {};
    int cancels = 0;
    manager.onCancel = [&cancels] { ++cancels; };
    DialogScene scene(QStringLiteral("MasterPasswordDialog { manager: scene.master }"),
                      {{QStringLiteral("master"), QVariant::fromValue(&manager)}});
    manager.setIsPresented(true);
    ASSERT_TRUE(scene.getsFocus("Master Password"));
    scene.type("Masterkey9");
    scene.press(Qt::Key_Backtab);
    ASSERT_TRUE(scene.getsFocus("Authenticate"));
    scene.press(Qt::Key_Return);
    ASSERT_TRUE(manager.isAuthenticating());
    ASSERT_NE(scene.focused(), manager.actionTitle());
    scene.press(Qt::Key_Escape);
    EXPECT_EQ(cancels, 1);
    EXPECT_TRUE(scene.getsFocus("Behind"));
}

} // namespace
