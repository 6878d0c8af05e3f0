// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/dialogs/RemoveProtectionDialogManager.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillhaven {
namespace {

TEST(ConfirmationDialogManager, StartsClosedWithItsUsualTitles)
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

TEST(ConfirmationDialogManager, ActionMayPutTheNextQuestionIntoTheSameDialog)
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

TEST(ConfirmationDialogManager, ActionsStayUntilTheNextCallerReplacesThem)
{
    ConfirmationDialogManager manager;
    int calls = 0;
    manager.onConfirm = [&] { ++calls; };
    manager.confirm();
    manager.confirm();
    EXPECT_EQ(calls, 2);
}

TEST(ConfirmationDialogManager, TellsOnlyOfChanges)
{
    ConfirmationDialogManager manager;
    const QSignalSpy changes(&manager, &ConfirmationDialogManager::changed);
    manager.setTitle(QStringLiteral("Reset?"));
    manager.setTitle(QStringLiteral("Reset?"));
    manager.setIsDestructive(false);
    EXPECT_EQ(changes.size(), 1);
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

TEST(RemoveProtectionDialogManager, ShowStoresTheThreeAndPresentsLast)
{
    RemoveProtectionDialogManager manager;
    QStringList states;
    QObject::connect(&manager, &RemoveProtectionDialogManager::changed, [&] {
        states += manager.itemName() + (manager.isPresented() ? QStringLiteral(" open") : QStringLiteral(" closed"));
    });
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
