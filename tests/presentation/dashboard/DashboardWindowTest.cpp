// SPDX-License-Identifier: GPL-3.0-or-later

// The real window with the dashboard and the real engine, driven by key presses and checked by its texts.

#include "DashboardWindowFixture.h"
#include "support/DisplayName.h"

#include <QSignalSpy>

#include <ctime>
#include <iostream>

using namespace quillhaven;
using namespace quillhaven::test;

TEST_F(DashboardWindow, TitleAndSizes)
{
    QQuickWindow *window = shown().window();
    EXPECT_EQ(window->title(), QStringLiteral("Quillhaven"));
    EXPECT_EQ(window->minimumSize(), QSize(760, 560));
}

TEST_F(DashboardWindow, IsCreatedHiddenAndReportsEachAppearance)
{
    MainWindow &window = shown();
    QSignalSpy appeared(&window, &MainWindow::contentAppeared);
    window.hide();
    EXPECT_FALSE(window.isVisible());
    window.show();
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(appeared.size(), 1);
}

TEST_F(DashboardWindow, ClosingAsksAndKeepsTheWindow)
{
    MainWindow &window = shown();
    QSignalSpy asked(&window, &MainWindow::closeRequested);
    window.window()->close();
    EXPECT_EQ(asked.size(), 1);
    EXPECT_TRUE(window.isVisible());
}

TEST_F(DashboardWindow, EmptyCatalogueShowsTheWelcomeAndNoFilters)
{
    EXPECT_TRUE(shows("No items found"));
    EXPECT_TRUE(
        shows("Start protecting your sensitive files and folders by clicking the 'Protect New Item' button above "
              "or by dragging them here."));
    EXPECT_TRUE(shows("Filters will appear once you add items."));
    EXPECT_FALSE(shows("No results"));
    EXPECT_FALSE(shows("Filters Active"));
    EXPECT_TRUE(shows("Secure your files with ease"));
    EXPECT_TRUE(shows("Protect New Item"));
    EXPECT_FALSE(shows("Set Master Password")) << "it is in the preferences";
    EXPECT_FALSE(shows("Backup"));
    EXPECT_TRUE(shows("v1.0"));
}

TEST_F(DashboardWindow, CardsAndRowsShowTheContentsOfTheCatalogue)
{
    storeThree();
    for (const char *text : {"Protected Items", "Currently Unlocked", "Locked with Touch ID", "Locked with Password",
                             "alpha.txt", "bravo.png", "charlie", "~/papers", "Locked", "Unlocked",
                             "Includes both locked and unlocked items currently managed by Quillhaven."}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    EXPECT_FALSE(shows("No items found"));
}

TEST_F(DashboardWindow, SearchWithoutResultsOffersToClearIt)
{
    storeThree();
    started().dashboard.filters()->setSearchText(QStringLiteral("zzz"));
    for (const char *text : {"No items found", "No items match your search criteria", "No results", "Clear Search",
                             "Try adjusting filters above or clear all to see your protected files.",
                             "Showing filtered results from 3 total items."}) {
        EXPECT_TRUE(shows(text)) << text;
    }
    started().dashboard.filters()->setSearchText(QStringLiteral("al"));
    EXPECT_TRUE(shows("Filters Active"));
    EXPECT_TRUE(shows("alpha.txt"));
    EXPECT_FALSE(shows("bravo.png"));
}

TEST_F(DashboardWindow, ArrowKeysMoveBetweenRowsAndTabWithinOne)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    EXPECT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_Tab);
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), QStringLiteral("charlie"));
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
}

TEST_F(DashboardWindow, FindKeyFocusesTheSearchField)
{
    storeThree();
    press(Qt::Key_F, Qt::ControlModifier);
    for (const char letter : {'b', 'r', 'a'}) {
        QTest::keyClick(shown().window(), letter);
    }
    EXPECT_EQ(started().dashboard.filters()->searchText(), QStringLiteral("bra"));
    EXPECT_FALSE(shows("alpha.txt"));
}

TEST_F(DashboardWindow, DownMovesFromTheSearchToItsResultsAndEscapeClearsIt)
{
    storeThree();
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClick(shown().window(), 'b');
    press(Qt::Key_Down);
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_F, Qt::ControlModifier);
    press(Qt::Key_Escape);
    EXPECT_EQ(started().dashboard.filters()->searchText(), QString());
    EXPECT_TRUE(shows("alpha.txt"));
}

TEST_F(DashboardWindow, PageKeysMoveByMoreThanOneRow)
{
    QList<ProtectedItem> items;
    for (int number = 10; number < 60; ++number) {
        items.append(namedItem(QString::number(number)));
    }
    storeCatalogue(services, items);
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_PageDown);
    EXPECT_GT(focusedRow(), QStringLiteral("12"));
    EXPECT_LT(focusedRow(), QStringLiteral("59"));
    press(Qt::Key_PageUp);
    EXPECT_EQ(focusedRow(), QStringLiteral("10"));
    press(Qt::Key_End);
    press(Qt::Key_PageDown);
    EXPECT_EQ(focusedRow(), QStringLiteral("59"));
}

TEST_F(DashboardWindow, FilterOpensAtItsCurrentValue)
{
    storeThree();
    started().dashboard.filters()->setStatusFilter(SearchFilterBarModel::StatusFilter::locked);
    shown();
    const auto isAt = [this](const char *text) {
        const QQuickItem *item = shown().window()->activeFocusItem();
        return item && item->property("text").toString() == QString::fromUtf8(text);
    };
    for (int presses = 0; presses < 20 && !isAt("Status: Locked"); ++presses) {
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Space);
    ASSERT_TRUE(spinUntil([&] { return isAt("Locked"); }));
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(started().dashboard.filters()->statusFilter(), SearchFilterBarModel::StatusFilter::unlocked);
}

TEST_F(DashboardWindow, NamesOfEveryScriptStartAtTheSameEdge)
{
    storeCatalogue(services, {namedItem(QStringLiteral("alpha.txt")), namedItem(QStringLiteral("תוכנית.pdf"))});
    const QStringList names{QStringLiteral("alpha.txt"), displayName(QStringLiteral("תוכנית.pdf"))};
    shown();
    render();
    int seen = 0;
    for (const QQuickItem *item : visibleItems(shown().window()->contentItem())) {
        if (names.contains(item->property("text").toString())) {
            EXPECT_EQ(item->property("effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);
            ++seen;
        }
    }
    EXPECT_EQ(seen, 2);
}

TEST_F(DashboardWindow, ReturnOnARowUnlocksIt)
{
    services.home.write(QStringLiteral("papers/album/one.jpg"));
    started().protect(services.home.path(QStringLiteral("papers/album")));
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Return);
    DashboardHarness::settle();
    EXPECT_TRUE(started().item().isMounted);
    EXPECT_TRUE(shows("Unlocked"));
    EXPECT_EQ(focusedRow(), QStringLiteral("album"));
}

TEST_F(DashboardWindow, FocusStaysOnItsRowWhenTheOneAboveIsRemoved)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    ASSERT_EQ(focusedRow(), QStringLiteral("charlie"));
    started().manager.removeFromProtectedItems(QStringLiteral("ID-alpha.txt"));
    render();
    EXPECT_EQ(focusedRow(), QStringLiteral("charlie"));
}

TEST_F(DashboardWindow, FocusStaysOnItsItemWhenTheOrderChanges)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_Down);
    ASSERT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    started().dashboard.filters()->setSortOption(SearchFilterBarModel::SortOption::status);
    render();
    EXPECT_EQ(started().shownNames(), QStringLiteral("alpha.txt charlie bravo.png"));
    EXPECT_EQ(focusedRow(), QStringLiteral("bravo.png"));
    press(Qt::Key_Up);
    EXPECT_EQ(focusedRow(), QStringLiteral("charlie"));
}

TEST_F(DashboardWindow, FocusFollowsItsItemToAnotherPlace)
{
    storeThree();
    started().dashboard.filters()->setSortOption(SearchFilterBarModel::SortOption::status);
    shown();
    ASSERT_TRUE(tabToList());
    ASSERT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
    setMounted(QStringLiteral("ID-alpha.txt"), true);
    render();
    EXPECT_EQ(started().shownNames(), QStringLiteral("charlie alpha.txt bravo.png"));
    EXPECT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
    setMounted(QStringLiteral("ID-bravo.png"), false);
    render();
    EXPECT_EQ(started().shownNames(), QStringLiteral("bravo.png charlie alpha.txt"));
    EXPECT_EQ(focusedRow(), QStringLiteral("alpha.txt"));
}

TEST_F(DashboardWindow, FocusStaysOnItsItemIfItPassesANewFilter)
{
    storeThree();
    shown();
    ASSERT_TRUE(tabToList());
    press(Qt::Key_End);
    ASSERT_EQ(focusedRow(), QStringLiteral("charlie"));
    started().dashboard.filters()->setStatusFilter(SearchFilterBarModel::StatusFilter::locked);
    render();
    EXPECT_EQ(focusedRow(), QStringLiteral("charlie"));
    started().dashboard.filters()->clearAllFilters();
    render();
    EXPECT_EQ(focusedRow(), QStringLiteral("charlie"));
}

TEST_F(DashboardWindow, ErrorIsShownInItsDialog)
{
    shown();
    started().dashboard.protecting()->handleFileSelection(services.home.path(QStringLiteral("absent.txt")));
    EXPECT_TRUE(eventuallyShows("File or folder does not exist"));
    started().dashboard.errorDialogManager()->hideError();
    render();
}

TEST_F(DashboardWindow, ProtectionIsShownUnderTheToolbarWhileItIsRunning)
{
    shown();
    const QString path = services.home.write(QStringLiteral("papers/will.pdf"));
    bool wasNamed = false;
    // The engine asks for access during its work.
    services.panels.confirm = [&](const PlaceRequest &) {
        wasNamed = shows("Protecting “will.pdf”…");
        return path;
    };
    started().dashboard.protecting()->showPasswordDialog(path, true);
    DashboardHarness::settle();
    EXPECT_TRUE(wasNamed);
    EXPECT_FALSE(shows("Protecting “will.pdf”…"));
    EXPECT_TRUE(shows("will.pdf"));
}

/// The processor time that the main thread has used.
double mainThreadMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

// Prints the time that a change takes on the main thread, which depends on the machine.
TEST_F(DashboardWindow, ChangeAmongTenThousandItemsIsShown)
{
    using Filters = SearchFilterBarModel;
    constexpr int count = 10'000;
    QList<ProtectedItem> items;
    for (int number = 0; number < count; ++number) {
        items.append(namedItem(QStringLiteral("%1.pdf").arg(number, 5, 10, QLatin1Char('0')), number % 2 == 1));
    }
    storeCatalogue(services, items);
    shown();
    Filters &filters = *started().dashboard.filters();
    const auto measured = [&](const char *what, const auto &change) {
        render();
        QSignalSpy frames(shown().window(), &QQuickWindow::frameSwapped);
        const double start = mainThreadMilliseconds();
        change();
        const double handled = mainThreadMilliseconds() - start;
        QTest::qWait(100);
        std::cout << what << ": " << handled << " ms, including the drawing after it "
                  << mainThreadMilliseconds() - start << " ms in " << frames.size() << " frames" << std::endl;
    };
    measured("change in the order of the names", [&] { setMounted(items[0].id, true); });
    EXPECT_TRUE(shows("Unlocked"));
    measured("mark", [&] { started().dashboard.rows().setBusy({items[1].id}, true); });
    measured("selection of one", [&] { started().dashboard.selection()->onSelectionToggle(items[1].id); });
    measured("selection of all", [&] { started().dashboard.selection()->selectAll(); });
    measured("change with all selected", [&] { setMounted(items[2].id, true); });
    started().dashboard.selection()->clearSelection();
    measured("search that keeps every tenth", [&] { filters.setSearchText(QStringLiteral("5.pdf")); });
    measured("change under a search", [&] { setMounted(items[5].id, true); });
    measured("end of the search", [&] { filters.clearAllFilters(); });
    measured("order of the status", [&] { filters.setSortOption(Filters::SortOption::status); });
    measured("change in the order of the status", [&] { setMounted(items[4].id, true); });
    EXPECT_EQ(started().dashboard.items()->count(), count);
}
