// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/QuestionWindow.h"

#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ErrorDialogManager.h"
#include "support/FakeBiometricAuthenticator.h"
#include "support/RunTask.h"

#include <QRasterWindow>
#include <QTest>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class WindowOfQuestions : public ::testing::Test
{
protected:
    WindowOfQuestions()
    {
        for (QWindow *window : {&main, &other, &panel}) {
            window->resize(300, 200);
        }
        place.addMain(&main);
        place.add(&other);
        place.follow(question);
        place.follow(error);
        place.follow(biometrics);
    }
    static void activate(QWindow &window)
    {
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void ask() { question.show({.title = QStringLiteral("Reset?"), .message = {}}); }

    int timesBroughtForward = 0;
    QRasterWindow main;
    QRasterWindow other;
    QRasterWindow panel; ///< a window of the program without sheets
    ConfirmationDialogManager question;
    ErrorDialogManager error;
    FakeBiometricAuthenticator biometrics;
    QuestionWindow place{[this] {
        ++timesBroughtForward;
        main.show();
    }};
};

TEST_F(WindowOfQuestions, IsTheFirstOneAtStart)
{
    EXPECT_EQ(place.mainWindow(), &main);
    EXPECT_EQ(place.window(), &main);
}

TEST_F(WindowOfQuestions, IsTheActiveOne)
{
    activate(main);
    activate(other);
    ask();
    EXPECT_EQ(place.window(), &other);
    question.confirm();
    activate(main);
    ask();
    EXPECT_EQ(place.window(), &main);
    EXPECT_EQ(timesBroughtForward, 0);
}

TEST_F(WindowOfQuestions, IsTheOneWhoseDialogIsActive)
{
    activate(main);
    other.show();
    panel.setTransientParent(&other);
    panel.setFlag(Qt::Dialog);
    activate(panel);
    ask();
    EXPECT_EQ(place.window(), &other);
}

TEST_F(WindowOfQuestions, IsOneOnTheScreenIfTheActiveWindowHasNoSheets)
{
    activate(other);
    activate(panel);
    ask();
    EXPECT_EQ(place.window(), &other);
    EXPECT_EQ(timesBroughtForward, 0);
}

TEST_F(WindowOfQuestions, IsTheMainOneBroughtForwardIfAllAreHidden)
{
    activate(panel);
    bool wasStillClosed = false;
    QObject::connect(&main, &QWindow::visibleChanged, &question, [&] { wasStillClosed = !question.isPresented(); });
    ask();
    EXPECT_EQ(timesBroughtForward, 1);
    EXPECT_EQ(place.window(), &main);
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(wasStillClosed) << "no sheet is opened in a window that will not keep it";
}

TEST_F(WindowOfQuestions, IsBroughtForwardIfItIsMinimised)
{
    activate(main);
    main.setWindowStates(Qt::WindowMinimized);
    ask();
    EXPECT_EQ(timesBroughtForward, 1);
}

TEST_F(WindowOfQuestions, IsBroughtForwardForAQuestionThatReplacesAnotherInAHiddenWindow)
{
    activate(main);
    ask();
    main.hide();
    EXPECT_EQ(timesBroughtForward, 0) << "the user hid the window";
    ask();
    EXPECT_EQ(timesBroughtForward, 1);
}

TEST_F(WindowOfQuestions, IsBroughtForwardForTheReaderOncePerPrompt)
{
    const auto prompt = [this](const char *hint) {
        biometrics.setPrompt(true, QStringLiteral("Unlock protected item"), QString::fromUtf8(hint));
    };
    prompt("Place your finger on the reader");
    EXPECT_EQ(timesBroughtForward, 1);
    main.hide();
    prompt("Try again");
    EXPECT_EQ(timesBroughtForward, 1);
    biometrics.setPrompt(false, {}, {});
    prompt("Place your finger on the reader");
    EXPECT_EQ(timesBroughtForward, 2);
}

TEST_F(WindowOfQuestions, StaysWithTheQuestionThatIsOpen)
{
    activate(other);
    ask();
    activate(main);
    error.showErrorWithAutoTroubleshooting(QStringLiteral("The disk is full."), QStringLiteral("Error"));
    EXPECT_EQ(place.window(), &other);
    question.confirm();
    error.hideError();
    ask();
    EXPECT_EQ(place.window(), &main);
}

TEST_F(WindowOfQuestions, MovesFromAHiddenWindowToOneOnTheScreen)
{
    activate(main);
    activate(other);
    ask();
    other.hide();
    EXPECT_EQ(place.window(), &main);
    EXPECT_EQ(timesBroughtForward, 0);
}

TEST_F(WindowOfQuestions, MovesFromAHiddenWindowToTheMainOne)
{
    activate(other);
    ask();
    other.hide();
    EXPECT_EQ(place.window(), &main);
    EXPECT_EQ(timesBroughtForward, 1);
}

TEST_F(WindowOfQuestions, DoesNotChangeWhenAWindowWithoutAQuestionIsHidden)
{
    activate(other);
    ask();
    question.confirm();
    other.hide();
    EXPECT_EQ(timesBroughtForward, 0);
}

TEST_F(WindowOfQuestions, ForgetsADestroyedWindow)
{
    {
        QRasterWindow brief;
        brief.resize(300, 200);
        place.add(&brief);
        activate(brief);
        ask();
        EXPECT_EQ(place.window(), &brief);
        question.confirm();
    }
    ask();
    EXPECT_EQ(place.window(), &main);
    EXPECT_EQ(timesBroughtForward, 1);
}

} // namespace
