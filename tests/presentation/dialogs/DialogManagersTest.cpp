// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"
#include "support/RunTask.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

using test::RunningTask;

TEST(ConfirmationDialogManager, StartsClosedWithItsDefaultTitles)
{
    const ConfirmationDialogManager manager;
    EXPECT_FALSE(manager.isPresented());
    EXPECT_EQ(manager.title(), QString());
    EXPECT_EQ(manager.message(), QString());
    EXPECT_EQ(manager.confirmTitle(), QStringLiteral("Confirm"));
    EXPECT_EQ(manager.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_FALSE(manager.isDestructive());
    EXPECT_TRUE(manager.showCancelButton());
}

TEST(ConfirmationDialogManager, ClosesBeforeItActs)
{
    ConfirmationDialogManager manager;
    QStringList acts;
    manager.onConfirm = [&] { acts += manager.isPresented() ? QStringLiteral("open") : QStringLiteral("confirmed"); };
    manager.onCancel = [&] { acts += manager.isPresented() ? QStringLiteral("open") : QStringLiteral("cancelled"); };
    manager.setIsPresented(true);
    manager.confirm();
    manager.setIsPresented(true);
    manager.cancel();
    EXPECT_EQ(acts, (QStringList{QStringLiteral("confirmed"), QStringLiteral("cancelled")}));
}

TEST(ConfirmationDialogManager, ButtonsWithoutAnActionOnlyClose)
{
    ConfirmationDialogManager manager;
    manager.setIsPresented(true);
    manager.confirm();
    EXPECT_FALSE(manager.isPresented());
    manager.setIsPresented(true);
    manager.cancel();
    EXPECT_FALSE(manager.isPresented());
}

TEST(ConfirmationDialogManager, ActionCanAskTheNextQuestionInTheSameDialog)
{
    ConfirmationDialogManager manager;
    QStringList answers;
    manager.onConfirm = [&] {
        const QString kept = QStringLiteral("first");
        manager.onConfirm = [&answers] { answers += QStringLiteral("second"); };
        manager.setIsPresented(true);
        answers += kept;
    };
    manager.setIsPresented(true);
    manager.confirm();
    EXPECT_TRUE(manager.isPresented());
    manager.confirm();
    EXPECT_EQ(answers, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
    EXPECT_FALSE(manager.isPresented());
}

TEST(ConfirmationDialogManager, ActionsAreKeptUntilTheNextCallerReplacesThem)
{
    ConfirmationDialogManager manager;
    int calls = 0;
    manager.onConfirm = [&] { ++calls; };
    manager.confirm();
    manager.confirm();
    EXPECT_EQ(calls, 2);
}

TEST(ConfirmationDialogManager, ReportsOnlyChanges)
{
    ConfirmationDialogManager manager;
    const QSignalSpy texts(&manager, &ConfirmationDialogManager::textChanged);
    const QSignalSpy buttons(&manager, &ConfirmationDialogManager::buttonsChanged);
    manager.setTitle(QStringLiteral("Reset?"));
    manager.setTitle(QStringLiteral("Reset?"));
    manager.setIsDestructive(false);
    EXPECT_EQ(texts.size(), 1);
    EXPECT_EQ(buttons.size(), 0);
}

TEST(ConfirmationDialogManager, QuestionIsSetCompletelyBeforeItIsPresented)
{
    ConfirmationDialogManager manager;
    manager.setCancelTitle(QStringLiteral("left"));
    manager.setIsDestructive(true);
    manager.setShowCancelButton(false);
    manager.onConfirm = [] { ADD_FAILURE() << "the action of the last question was called"; };
    manager.onCancel = manager.onConfirm;
    bool wasComplete = false;
    QObject::connect(&manager, &ConfirmationDialogManager::asked, [&] {
        wasComplete = manager.title() == QStringLiteral("Reset?") && manager.message() == QStringLiteral("Really?") &&
                      manager.confirmTitle() == QStringLiteral("Confirm") &&
                      manager.cancelTitle() == QStringLiteral("Cancel") && !manager.isDestructive() &&
                      manager.showCancelButton() && !manager.onConfirm && !manager.onCancel;
    });
    manager.show({.title = QStringLiteral("Reset?"), .message = QStringLiteral("Really?")});
    EXPECT_TRUE(wasComplete);

    manager.setIsPresented(false);
    manager.disconnect();
    int answers = 0;
    QObject::connect(&manager, &ConfirmationDialogManager::asked, [&] {
        manager.onConfirm();
        manager.onCancel();
    });
    manager.show({.title = {}, .message = {}}, [&] { ++answers; }, [&] { ++answers; });
    EXPECT_EQ(answers, 2);
}

TEST(ConfirmationDialogManager, AskReturnsAfterTheDialogWasClosed)
{
    ConfirmationDialogManager manager;
    const auto ask = [&]() -> QCoro::Task<DialogEnd> {
        const auto answer = manager.ask({.title = QStringLiteral("Reset?"), .message = {}});
        const DialogEnd end = co_await answer;
        EXPECT_FALSE(manager.isPresented());
        co_return end;
    };
    const RunningTask<DialogEnd> first(ask());
    EXPECT_TRUE(manager.isPresented());
    manager.confirm();
    EXPECT_EQ(first.wait(), DialogEnd::Confirmed);
    const RunningTask<DialogEnd> second(ask());
    manager.cancel();
    EXPECT_EQ(second.wait(), DialogEnd::Cancelled);
}

TEST(ConfirmationDialogManager, IfAskedAgainTheFirstCallerContinuesWithoutAnAnswer)
{
    ConfirmationDialogManager manager;
    const auto ask = [&]() -> QCoro::Task<DialogEnd> {
        const auto answer = manager.ask({.title = QStringLiteral("Reset?"), .message = {}});
        const DialogEnd end = co_await answer;
        co_return end;
    };
    const RunningTask<DialogEnd> first(ask());
    const QSignalSpy asked(&manager, &ConfirmationDialogManager::asked);
    const RunningTask<DialogEnd> second(ask());
    EXPECT_EQ(asked.size(), 1) << "a question in the open dialog is signalled too";
    EXPECT_EQ(first.wait(), DialogEnd::Replaced);
    EXPECT_TRUE(manager.isPresented());
    manager.confirm();
    EXPECT_EQ(second.wait(), DialogEnd::Confirmed);
}

TEST(ConfirmationDialogManager, IfDestroyedTheCallerOfAnOpenQuestionContinuesWithoutAnAnswer)
{
    std::optional<RunningTask<DialogEnd>> asking;
    {
        ConfirmationDialogManager manager;
        asking.emplace([](ConfirmationDialogManager &asked) -> QCoro::Task<DialogEnd> {
            const auto answer = asked.ask({.title = QStringLiteral("Reset?"), .message = {}});
            const DialogEnd end = co_await answer;
            co_return end;
        }(manager));
    }
    EXPECT_EQ(asking->wait(), DialogEnd::Replaced);
}

TEST(ProtectionMethodDialogManager, EachCardAndCancelCloseBeforeTheyAct)
{
    ProtectionMethodDialogManager manager;
    EXPECT_FALSE(manager.isPresented());
    QStringList acts;
    const auto act = [&](const QString &name) {
        return [&acts, &manager, name] { acts += manager.isPresented() ? QStringLiteral("open") : name; };
    };
    manager.onPasswordProtection = act(QStringLiteral("password"));
    manager.onTouchIDProtection = act(QStringLiteral("touch"));
    manager.onCancel = act(QStringLiteral("cancel"));
    manager.setIsPresented(true);
    manager.choosePasswordProtection();
    manager.setIsPresented(true);
    manager.chooseTouchIDProtection();
    manager.setIsPresented(true);
    manager.cancel();
    EXPECT_EQ(acts, (QStringList{QStringLiteral("password"), QStringLiteral("touch"), QStringLiteral("cancel")}));
}

TEST(ProtectionMethodDialogManager, AskReturnsTheChoice)
{
    using Choice = ProtectionMethodDialogManager::Choice;
    ProtectionMethodDialogManager manager;
    const auto ask = [&]() -> QCoro::Task<Choice> {
        const auto answer = manager.ask(QStringLiteral("Protect will.pdf"));
        const Choice choice = co_await answer;
        co_return choice;
    };
    const auto choiceAfter = [&](void (ProtectionMethodDialogManager::*press)()) {
        const RunningTask<Choice> asking(ask());
        EXPECT_TRUE(manager.isPresented());
        EXPECT_EQ(manager.title(), QStringLiteral("Protect will.pdf"));
        (manager.*press)();
        return asking.wait();
    };
    EXPECT_EQ(choiceAfter(&ProtectionMethodDialogManager::choosePasswordProtection), Choice::Password);
    EXPECT_EQ(choiceAfter(&ProtectionMethodDialogManager::chooseTouchIDProtection), Choice::TouchID);
    EXPECT_EQ(choiceAfter(&ProtectionMethodDialogManager::cancel), Choice::Cancelled);
    const RunningTask<Choice> first(ask());
    const RunningTask<Choice> second(ask());
    EXPECT_EQ(first.wait(), Choice::Replaced);
    manager.cancel();
    EXPECT_EQ(second.wait(), Choice::Cancelled);
}

TEST(ProtectionMethodDialogManager, TitleAndActionsAreThereBeforeItIsPresented)
{
    using Choice = ProtectionMethodDialogManager::Choice;
    ProtectionMethodDialogManager manager;
    const auto leftOver = [] { ADD_FAILURE() << "the last question's action"; };
    const auto choiceAtOnce = [&](std::function<void()> ProtectionMethodDialogManager::*action) {
        manager.setIsPresented(false);
        manager.setTitle(QStringLiteral("old"));
        manager.onPasswordProtection = manager.onTouchIDProtection = manager.onCancel = leftOver;
        const auto look = [&manager, action] {
            EXPECT_EQ(manager.title(), QStringLiteral("Protect will.pdf"));
            (manager.*action)();
        };
        const auto asked = QObject::connect(&manager, &ProtectionMethodDialogManager::asked, look);
        const auto presented = QObject::connect(&manager, &ProtectionMethodDialogManager::isPresentedChanged, look);
        const auto answer = manager.ask(QStringLiteral("Protect will.pdf"));
        QObject::disconnect(asked);
        QObject::disconnect(presented);
        return answer.isGiven() ? answer.await_resume() : Choice::Replaced;
    };
    EXPECT_EQ(choiceAtOnce(&ProtectionMethodDialogManager::onPasswordProtection), Choice::Password);
    EXPECT_EQ(choiceAtOnce(&ProtectionMethodDialogManager::onTouchIDProtection), Choice::TouchID);
    EXPECT_EQ(choiceAtOnce(&ProtectionMethodDialogManager::onCancel), Choice::Cancelled);
}

TEST(ProtectionMethodDialogManager, WithoutActionsItOnlyCloses)
{
    ProtectionMethodDialogManager manager;
    for (const auto press :
         {&ProtectionMethodDialogManager::choosePasswordProtection,
          &ProtectionMethodDialogManager::chooseTouchIDProtection, &ProtectionMethodDialogManager::cancel}) {
        manager.setIsPresented(true);
        (manager.*press)();
        EXPECT_FALSE(manager.isPresented());
    }
}

TEST(RemoveProtectionDialogManager, ShowStoresItsArgumentsBeforeItPresents)
{
    RemoveProtectionDialogManager manager;
    QStringList states;
    const auto note = [&] {
        states += manager.itemName() + (manager.isPresented() ? QStringLiteral(" open") : QStringLiteral(" closed"));
    };
    QObject::connect(&manager, &RemoveProtectionDialogManager::itemNameChanged, note);
    QObject::connect(&manager, &RemoveProtectionDialogManager::isPresentedChanged, note);
    QObject::connect(&manager, &RemoveProtectionDialogManager::asked,
                     [&] { EXPECT_TRUE(manager.onRemove && manager.onCancel); });
    bool isRemoved = false;
    bool isCancelled = false;
    manager.show(
        QStringLiteral("will.pdf"), [&] { isRemoved = !manager.isPresented(); },
        [&] { isCancelled = !manager.isPresented(); });
    EXPECT_EQ(states, (QStringList{QStringLiteral("will.pdf closed"), QStringLiteral("will.pdf open")}));
    manager.remove();
    EXPECT_TRUE(isRemoved);
    manager.setIsPresented(true);
    manager.cancel();
    EXPECT_TRUE(isCancelled);
}

TEST(RemoveProtectionDialogManager, MessageNamesTheItem)
{
    RemoveProtectionDialogManager manager;
    manager.show(QStringLiteral("will.pdf"), {}, {});
    EXPECT_EQ(manager.message(),
              QStringLiteral("This will restore 'will.pdf' to its original location and remove it from Quillhaven's "
                             "protection. Your original file will be safely restored."));
    manager.remove();
    EXPECT_FALSE(manager.isPresented());
}

} // namespace
} // namespace quillhaven
