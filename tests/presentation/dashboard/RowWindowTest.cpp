// SPDX-License-Identifier: GPL-3.0-or-later

// A row of the real window: its buttons, its menu and its gestures, by pointer and by keys.

#include "DashboardWindowFixture.h"

#include <QAccessible>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class RowWindow : public DashboardWindow
{
protected:
    RowWindow() { storeThree(); } // bravo.png is unlocked

    QQuickItem *row(const QString &name)
    {
        shown();
        render();
        for (QQuickItem *each : visibleItems(shown().window()->contentItem())) {
            if (each->property("originalName").toString() == name) {
                return each;
            }
        }
        return nullptr;
    }
    QPoint middleOf(const QString &name)
    {
        QQuickItem *found = row(name);
        EXPECT_TRUE(found) << qUtf8Printable(name);
        return found ? found->mapToScene({found->width() / 2, found->height() / 2}).toPoint() : QPoint();
    }
    /// Clicks the first item that has this value.
    void click(const char *property, const char *value)
    {
        shown();
        render();
        for (QQuickItem *each : visibleItems(shown().window()->contentItem())) {
            if (each->property(property).toString() == QString::fromUtf8(value)) {
                QTest::mouseClick(shown().window(), Qt::LeftButton, Qt::NoModifier,
                                  each->mapToScene({each->width() / 2, each->height() / 2}).toPoint());
                spinOnce();
                return;
            }
        }
        ADD_FAILURE() << value;
    }
    void doubleClick(const QString &name)
    {
        const QPoint middle = middleOf(name);
        QTest::mouseClick(shown().window(), Qt::LeftButton, Qt::NoModifier, middle);
        QTest::mouseDClick(shown().window(), Qt::LeftButton, Qt::NoModifier, middle);
        DashboardHarness::settle();
    }
    /// The entries of the open menu.
    QStringList menuEntries()
    {
        QStringList entries;
        for (QQuickItem *each : visibleItems(shown().window()->contentItem())) {
            if (each->inherits("QQuickMenuItem")) {
                entries.append(each->property("text").toString());
            }
        }
        return entries;
    }
    bool menuOpens()
    {
        return spinUntil([this] {
            render();
            return menuEntries().size() == 6;
        });
    }
    bool menuCloses()
    {
        return spinUntil([this] {
            render();
            return menuEntries().isEmpty();
        });
    }
};

} // namespace

TEST_F(RowWindow, ARightClickOpensTheMenuOfTheRow)
{
    QTest::mouseClick(shown().window(), Qt::RightButton, Qt::NoModifier, middleOf(QStringLiteral("bravo.png")));
    ASSERT_TRUE(menuOpens());
    EXPECT_EQ(menuEntries(), (QStringList{QStringLiteral("Lock Item"), QStringLiteral("Reveal in Finder"),
                                          QStringLiteral("Copy Path"), QStringLiteral("Duplicate as Encrypted Copy"),
                                          QStringLiteral("🗑️ Secure Shred"), QStringLiteral("Remove Protection")}));
    press(Qt::Key_Escape);
    EXPECT_TRUE(menuCloses());
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
}

TEST_F(RowWindow, TheMenuKeyAndShiftF10OpenTheMenuOfTheCurrentRow)
{
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down);
    press(Qt::Key_Menu);
    ASSERT_TRUE(menuOpens());
    press(Qt::Key_Down);   // the first action has the focus
    press(Qt::Key_Return); // reveal
    EXPECT_TRUE(menuCloses());
    DashboardHarness::settle();
    ASSERT_EQ(services.fileViewer.shown.size(), 1);
    EXPECT_TRUE(services.fileViewer.shown.first().first.endsWith(QStringLiteral("/bravo.png")));
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(menuOpens());
}

TEST_F(RowWindow, TheMenuClosesWhenItsItemIsGone)
{
    QTest::mouseClick(shown().window(), Qt::RightButton, Qt::NoModifier, middleOf(QStringLiteral("bravo.png")));
    ASSERT_TRUE(menuOpens());
    started().manager.removeFromProtectedItems(QStringLiteral("ID-bravo.png"));
    EXPECT_TRUE(menuCloses());
}

TEST_F(RowWindow, ADoubleClickRevealsAndNeverSelects)
{
    doubleClick(QStringLiteral("bravo.png"));
    EXPECT_EQ(services.fileViewer.shown.size(), 1);
    EXPECT_EQ(started().dashboard.selection()->selectedCount(), 0);
}

TEST_F(RowWindow, AClickInTheSelectionModeNeverReveals)
{
    shown();
    started().dashboard.selection()->toggleSelectionMode();
    doubleClick(QStringLiteral("bravo.png"));
    EXPECT_TRUE(services.fileViewer.shown.isEmpty());
    started().dashboard.selection()->clearSelection();
    started().dashboard.selection()->toggleSelectionMode();
    QTest::mouseClick(shown().window(), Qt::LeftButton, Qt::NoModifier, middleOf(QStringLiteral("alpha.txt")));
    spinOnce();
    EXPECT_EQ(namesOf(started().dashboard.selection()->getSelectedItems()), QStringList{QStringLiteral("alpha.txt")});
}

TEST_F(RowWindow, EachButtonIsLoggedByItsHelpText)
{
    for (const char *button : {"Reveal in Finder", "Copy Path to Clipboard", "Duplicate as Encrypted Copy",
                               "Secure Shred", "Remove Protection", "Unlock Item"}) {
        click("helpText", button);
        EXPECT_TRUE(log.contains(QStringLiteral("🔘 Button clicked: ") + QString::fromUtf8(button))) << button;
        DashboardHarness::settle();
        press(Qt::Key_Escape); // the question, if there is one
        EXPECT_TRUE(isUncovered()) << button;
    }
}

TEST_F(RowWindow, TheRowIsSixtyHighAndItsMarkAppearsInTheSelectionMode)
{
    QQuickItem *first = row(QStringLiteral("alpha.txt"));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->height(), 60);
    EXPECT_FALSE(shows("Done"));
    started().dashboard.selection()->toggleSelectionMode();
    EXPECT_TRUE(spinUntil([&] {
        render();
        return std::ranges::any_of(visibleItems(first), [](QQuickItem *each) {
            return each->property("label").toString() == QStringLiteral("Select alpha.txt") && each->width() >= 20;
        });
    }));
}

TEST_F(RowWindow, OnlyABusyRowHasARingAndItSaysWhatIsWorkedOn)
{
    const auto isWorking = [this](const QString &name) {
        const QList<QQuickItem *> items = visibleItems(row(name));
        return std::ranges::any_of(items, [](QQuickItem *each) { return each->inherits("QQuickBusyIndicator"); }) &&
               std::ranges::any_of(items, [&name](QQuickItem *each) {
                   QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(each);
                   return accessible && accessible->role() == QAccessible::Animation &&
                          accessible->text(QAccessible::Name) == QStringLiteral("Working on ") + name;
               });
    };
    EXPECT_FALSE(isWorking(QStringLiteral("alpha.txt")));
    started().dashboard.rows().setBusy({QStringLiteral("ID-alpha.txt")}, true);
    EXPECT_TRUE(isWorking(QStringLiteral("alpha.txt")));
    EXPECT_FALSE(isWorking(QStringLiteral("bravo.png")));
    started().dashboard.rows().setBusy({QStringLiteral("ID-alpha.txt")}, false);
    EXPECT_FALSE(isWorking(QStringLiteral("alpha.txt")));
}

TEST_F(RowWindow, ANoteTakesThePlaceOfAPathThatWasCopied)
{
    const auto isNoted = [this] { return shows("Path copied to clipboard"); };
    const auto paths = [this] { return texts().count(QStringLiteral("~/papers")); };
    EXPECT_FALSE(isNoted());
    EXPECT_EQ(paths(), 3);
    started().dashboard.rows().setShowingCopySuccess(QStringLiteral("ID-alpha.txt"), true);
    EXPECT_TRUE(isNoted());
    EXPECT_EQ(paths(), 2);
    started().dashboard.rows().setShowingCopySuccess(QStringLiteral("ID-alpha.txt"), false);
    EXPECT_FALSE(isNoted());
    EXPECT_EQ(paths(), 3);
}

TEST_F(RowWindow, TheAutoLockCardAndItsGearOpenThePreferences)
{
    EXPECT_TRUE(shows("Disabled"));
    for (const auto &[property, value] : {std::pair{"text", "Auto-lock"}, {"helpText", "Auto-lock settings"}}) {
        click(property, value);
        EXPECT_TRUE(preferences().model.isPresented()) << value;
        preferences().model.handleCloseAttempt();
        EXPECT_FALSE(preferences().model.isPresented());
        EXPECT_TRUE(isUncovered());
    }
}

TEST_F(RowWindow, KeysOpenThePanelAndTheListOfShortcuts)
{
    shown();
    press(Qt::Key_N, Qt::ControlModifier);
    DashboardHarness::settle();
    EXPECT_EQ(services.panels.requests.size(), 1);
    press(Qt::Key_F1);
    EXPECT_TRUE(eventuallyShows("Keyboard Shortcuts"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(sheets().keyboardShortcuts()->isPresented());
}

TEST_F(RowWindow, TheIntroductionIsShownInTheWindowUntilItWasRead)
{
    showsOnboarding = true;
    EXPECT_TRUE(eventuallyShows("Welcome to Quillhaven"));
    press(Qt::Key_Return); // "Get Started" has the focus
    EXPECT_FALSE(started().onboarding.shouldShowOnboarding());
    EXPECT_TRUE(services.defaults.standard().boolForKey(QStringLiteral("hasCompletedOnboarding")).value_or(false));
}

TEST_F(RowWindow, TheToolbarOfTheSelectionIsThereWhileAllSelectedItemsAreHidden)
{
    shown();
    started().dashboard.selection()->selectAll();
    EXPECT_TRUE(eventuallyShows("3 selected"));
    started().dashboard.filters()->setSearchText(QStringLiteral("nothing like this"));
    EXPECT_TRUE(eventuallyShows("No items match your search criteria"));
    EXPECT_TRUE(shows("3 selected"));
    EXPECT_TRUE(shows("Remove (3)"));
    EXPECT_TRUE(shows("Shred (3)"));
    EXPECT_FALSE(shows("Unlock (2)"));
}

TEST_F(RowWindow, TheDetailsOfAnItemAreShownInTheirSheet)
{
    shown();
    started().dashboard.itemDetails()->show(QStringLiteral("ID-bravo.png"));
    EXPECT_TRUE(eventuallyShows("Item Details"));
    for (const char *text : {"bravo.png", "Status", "Unlocked", "Type", "File", "Authentication", "Password",
                             "Lock Item", "Restore & Remove Protection", "Done"}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    press(Qt::Key_Return); // "Done" has the focus
    EXPECT_FALSE(started().dashboard.itemDetails()->isPresented());
}

TEST_F(RowWindow, TheTroubleshootingOfAnErrorIsShownInTheConfirmationDialog)
{
    shown();
    started().dashboard.errorDialogManager()->showErrorWithAutoTroubleshooting(QStringLiteral("No permission."),
                                                                               QStringLiteral("Error"));
    EXPECT_TRUE(eventuallyShows("No permission."));
    EXPECT_TRUE(spinUntil([this] {
        press(Qt::Key_Tab);
        QQuickItem *focused = shown().window()->activeFocusItem();
        return focused && focused->property("text").toString() == QStringLiteral("Troubleshooting");
    }));
    press(Qt::Key_Return);
    EXPECT_TRUE(started().confirmationDialog.isPresented());
    EXPECT_EQ(started().confirmationDialog.message(),
              ErrorDialogManager::detectTroubleshootingInfo(QStringLiteral("permission")).hint);
    EXPECT_EQ(started().confirmationDialog.cancelTitle(), QString());
}

TEST_F(RowWindow, AHeldReturnAnswersNoQuestionThatItHasAskedFor)
{
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);
    press(Qt::Key_Tab); // "Duplicate as Encrypted Copy" of alpha.txt
    press(Qt::Key_Return);
    ASSERT_TRUE(eventuallyShows("Duplicate"));
    ASSERT_TRUE(started().confirmationDialog.isPresented());
    for (int repeats = 0; repeats < 5; ++repeats) {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
        QCoreApplication::sendEvent(shown().window(), &held);
        spinOnce();
    }
    EXPECT_TRUE(started().confirmationDialog.isPresented());
}

TEST_F(RowWindow, AHeldDeleteKeyRemovesNothingFurther)
{
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down); // bravo.png is unlocked
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(shown().window(), &held);
    DashboardHarness::settle();
    EXPECT_EQ(started().manager.protectedItems().size(), 3);
}

TEST_F(RowWindow, TheMenuClosesWhenASheetAppears)
{
    QTest::mouseClick(shown().window(), Qt::RightButton, Qt::NoModifier, middleOf(QStringLiteral("bravo.png")));
    ASSERT_TRUE(menuOpens());
    started().confirmationDialog.show({.title = QStringLiteral("A question"), .message = QString()});
    EXPECT_TRUE(menuCloses());
    EXPECT_TRUE(started().confirmationDialog.isPresented());
}
