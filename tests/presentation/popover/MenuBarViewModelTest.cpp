// SPDX-License-Identifier: GPL-3.0-or-later

#include "MenuBarHarness.h"

#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class MenuBarModel : public DashboardTest
{
protected:
    MenuBarHarness &menuBar()
    {
        if (!m_menuBar) {
            m_menuBar.emplace(started(), services);
        }
        return *m_menuBar;
    }
    MenuBarViewModel &model() { return menuBar().model; }
    /// Protects a file, which is then locked.
    QString protect(const char *name)
    {
        const QString path = services.home.write(QStringLiteral("papers/") + QString::fromLatin1(name));
        started().protect(path);
        return path;
    }
    void toggle(int row)
    {
        model().onToggleLock(row);
        DashboardHarness::settle();
    }
    void unlock(int row)
    {
        toggle(row);
        started().typePassword(strongPassword);
    }
    [[nodiscard]] bool isMounted(int row) { return started().item(row).isMounted; }

private:
    std::optional<MenuBarHarness> m_menuBar;
};

} // namespace

TEST_F(MenuBarModel, WithoutItemsTheHeaderShowsZero)
{
    EXPECT_TRUE(model().isEmpty());
    EXPECT_EQ(model().countText(), QStringLiteral("0 items"));
}

TEST_F(MenuBarModel, CountsTheUnlockedAndTheOtherItems)
{
    storeCatalogue(services, {namedItem(QStringLiteral("a")), namedItem(QStringLiteral("b"), true),
                              namedItem(QStringLiteral("c"))});
    EXPECT_FALSE(model().isEmpty());
    EXPECT_EQ(model().countText(), QStringLiteral("3 items"));
    EXPECT_EQ(model().activeText(), QStringLiteral("1 Active"));
    EXPECT_EQ(model().securedText(), QStringLiteral("2 Secured"));
}

TEST_F(MenuBarModel, FollowsTheCatalogue)
{
    storeCatalogue(services, {namedItem(QStringLiteral("a"))});
    int changes = 0;
    QObject::connect(&model(), &MenuBarViewModel::itemsChanged, &model(), [&changes] { ++changes; });
    started().manager.catalogue().updateUnsaved(QStringLiteral("ID-a"),
                                                [](ProtectedItem &item) { item.isMounted = true; });
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(model().activeText(), QStringLiteral("1 Active"));
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::BadgeTextRole), QStringLiteral("Active"));
}

TEST_F(MenuBarModel, ARowShowsSymbolNamePathAndState)
{
    QList<ProtectedItem> items{namedItem(QStringLiteral("photo.png")), namedItem(QStringLiteral("papers"), true)};
    items[1].isFolder = true;
    storeCatalogue(services, items);
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::SymbolRole), QStringLiteral("doc.fill"));
    EXPECT_EQ(menuBar().text(1, MenuBarItemsModel::SymbolRole), QStringLiteral("folder.fill"));
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::NameRole), QStringLiteral("photo.png"));
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::PathRole), started().item(0).originalPath);
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::BadgeTextRole), QStringLiteral("Secured"));
    EXPECT_EQ(menuBar().text(1, MenuBarItemsModel::BadgeTextRole), QStringLiteral("Active"));
}

TEST_F(MenuBarModel, ARowSaysItsNameItsStateAndWhatAPressDoes)
{
    storeCatalogue(services, {namedItem(QStringLiteral("a.txt")), namedItem(QStringLiteral("b.txt"), true)});
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::AccessibleTextRole), QStringLiteral("a.txt, locked"));
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::AccessibleDescriptionRole), QStringLiteral("Press to unlock it."));
    EXPECT_EQ(menuBar().text(1, MenuBarItemsModel::AccessibleTextRole), QStringLiteral("b.txt, unlocked"));
    EXPECT_EQ(menuBar().text(1, MenuBarItemsModel::AccessibleDescriptionRole), QStringLiteral("Press to lock it."));
}

TEST_F(MenuBarModel, ANameThatDeceivesIsShownHarmless)
{
    storeCatalogue(services, {namedItem(QStringLiteral("two\nlines.txt"))});
    EXPECT_EQ(menuBar().text(0, MenuBarItemsModel::NameRole), QStringLiteral("two↵lines.txt"));
    EXPECT_FALSE(menuBar().text(0, MenuBarItemsModel::PathRole).contains(QLatin1Char('\n')));
}

TEST_F(MenuBarModel, EveryItemHasARowInTheOrderOfTheCatalogue)
{
    QList<ProtectedItem> items;
    for (int number = 0; number < 1000; ++number) {
        items.append(namedItem(QStringLiteral("item %1").arg((number * 7) % 1000)));
    }
    storeCatalogue(services, items);
    ASSERT_EQ(model().items()->rowCount(), 1000);
    EXPECT_EQ(model().countText(), QStringLiteral("1000 items"));
    for (int number = 0; number < 1000; ++number) {
        ASSERT_EQ(menuBar().text(number, MenuBarItemsModel::NameRole), items.at(number).originalName);
    }
}

TEST_F(MenuBarModel, APressUnlocksALockedItemAndLocksAnUnlockedOne)
{
    const QString path = protect("will.txt");
    unlock(0);
    EXPECT_TRUE(isMounted(0));
    toggle(0);
    EXPECT_FALSE(isMounted(0));
    EXPECT_FALSE(model().showingError());
}

TEST_F(MenuBarModel, ARefusedMasterPasswordChangesNothing)
{
    protect("will.txt");
    const ProtectedItem before = started().item(0);
    runTask(started().masterPassword.setMasterPassword(theMasterPassword));
    started().masterPassword.endSession();
    toggle(0);
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_EQ(started().item(0), before);
    EXPECT_FALSE(started().passwordDialog.isPresented());
    EXPECT_FALSE(model().showingError());
}

TEST_F(MenuBarModel, TheRowDecidesAsItWasWhenItWasPressed)
{
    protect("will.txt");
    unlock(0);
    ASSERT_TRUE(isMounted(0));
    runTask(started().masterPassword.setMasterPassword(theMasterPassword));
    started().masterPassword.endSession();
    toggle(0);
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().manager.catalogue().updateUnsaved(started().item(0).id,
                                                [](ProtectedItem &item) { item.isMounted = false; });
    started().typeMasterPassword(theMasterPassword);
    // It locks, which has nothing to do any more; an unlock would ask for the item's password.
    EXPECT_FALSE(started().passwordDialog.isPresented());
    EXPECT_FALSE(isMounted(0));
}

TEST_F(MenuBarModel, AFailureIsShownWithAHintForItsText)
{
    protect("will.txt");
    ASSERT_TRUE(QFile::remove(started().item().originalBackupPath));
    unlock(0);
    EXPECT_FALSE(isMounted(0));
    ASSERT_TRUE(model().showingError());
    const ErrorDialogManager &dialog = *model().errorDialogManager();
    EXPECT_EQ(dialog.errorTitle(), QStringLiteral("Error"));
    EXPECT_FALSE(model().errorMessage().isEmpty());
    EXPECT_EQ(dialog.errorMessage(), model().errorMessage());
    EXPECT_EQ(dialog.showTroubleshooting(),
              ErrorDialogManager::detectTroubleshootingInfo(model().errorMessage()).isFound);
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(MenuBarModel, BringsTheMainWindowForwardATenthOfASecondAfterActivatingTheApplication)
{
    model().bringMainWindowForward();
    EXPECT_TRUE(menuBar().launchContext.shouldShowMainWindow());
    EXPECT_EQ(menuBar().presence.activations, 1);
    services.clock.advance(99ms);
    EXPECT_EQ(menuBar().presence.ordersToFront, 0);
    services.clock.advance(1ms);
    EXPECT_EQ(menuBar().presence.ordersToFront, 1);
    services.clock.advance(1s);
    EXPECT_EQ(menuBar().preferencesShown, 0);
}

TEST_F(MenuBarModel, PreferencesArePostedAfterAFifthOfASecond)
{
    model().showPreferences();
    services.clock.advance(199ms);
    EXPECT_EQ(menuBar().presence.ordersToFront, 1);
    EXPECT_EQ(menuBar().preferencesShown, 0);
    services.clock.advance(1ms);
    EXPECT_EQ(menuBar().preferencesShown, 1);
}

TEST_F(MenuBarModel, WithoutAMainWindowPreferencesActivateTheApplicationAndAreStillPosted)
{
    menuBar().presence.windowTitle = QStringLiteral("Another");
    model().showPreferences();
    services.clock.advance(200ms);
    EXPECT_EQ(menuBar().presence.activations, 1);
    EXPECT_EQ(menuBar().presence.ordersToFront, 0);
    EXPECT_EQ(menuBar().preferencesShown, 1);
}

TEST_F(MenuBarModel, QuitAsksForTheEndOfTheProgram)
{
    model().quit();
    EXPECT_EQ(menuBar().terminations, 1);
}

TEST_F(MenuBarModel, TheMenuOpensLocksShowsPreferencesAndQuits)
{
    protect("a.txt");
    protect("b.txt");
    protect("c.txt");
    unlock(0);
    unlock(2);
    const std::vector<StatusItem::MenuEntry> menu = model().menuEntries();
    ASSERT_EQ(menu.size(), 4U);
    EXPECT_EQ(menu[0].text, QStringLiteral("Open"));
    menu[0].action();
    services.clock.advance(100ms);
    EXPECT_EQ(menuBar().presence.ordersToFront, 1);
    EXPECT_EQ(menu[1].text, QStringLiteral("Lock All"));
    menu[1].action();
    DashboardHarness::settle();
    EXPECT_EQ(model().activeText(), QStringLiteral("0 Active"));
    EXPECT_EQ(menu[2].text, QStringLiteral("Preferences"));
    menu[2].action();
    services.clock.advance(200ms);
    EXPECT_EQ(menuBar().preferencesShown, 1);
    EXPECT_EQ(menu[3].text, QStringLiteral("Quit"));
    menu[3].action();
    EXPECT_EQ(menuBar().terminations, 1);
}

TEST_F(MenuBarModel, LockAllChangesNothingWhenTheMasterPasswordIsRefused)
{
    protect("a.txt");
    unlock(0);
    runTask(started().masterPassword.setMasterPassword(theMasterPassword));
    started().masterPassword.endSession();
    model().menuEntries().at(1).action();
    DashboardHarness::settle();
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_TRUE(isMounted(0));
}
