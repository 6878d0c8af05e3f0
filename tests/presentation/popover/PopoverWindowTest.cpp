// SPDX-License-Identifier: GPL-3.0-or-later

// The real popover on a display, over the real engine.

#include "presentation/PopoverWindow.h"
#include "../dashboard/DashboardWindowFixture.h"
#include "MenuBarHarness.h"

#include <QFile>
#include <QRasterWindow>
#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

class PopoverOnScreen : public DashboardWindow
{
protected:
    PopoverOnScreen()
    {
        bringForward = [this] { built().show(); };
    }
    void TearDown() override
    {
        bringForward = [] {};
        m_popover.reset();
        DashboardWindow::TearDown();
        m_menuBar.reset();
    }

    MenuBarHarness &menuBar()
    {
        if (!m_menuBar) {
            m_menuBar.emplace(started(), services);
            menuBarError = m_menuBar->model.errorDialogManager();
        }
        return *m_menuBar;
    }
    PopoverWindow &popover()
    {
        if (!m_popover) {
            m_popover.emplace(services.clock,
                              [this] { return makePopoverWindow(engine(), menuBar().model, sheets()); });
        }
        return *m_popover;
    }
    QQuickWindow &open()
    {
        popover().show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(popover().window()));
        return *popover().window();
    }
    QStringList shownTexts()
    {
        spinOnce();
        popover().window()->grabWindow();
        QStringList all;
        for (QQuickItem *item : visibleItems(popover().window()->contentItem())) {
            const QString text = item->property("text").toString();
            if (!text.isEmpty()) {
                all.append(text);
            }
        }
        return all;
    }
    void type(Qt::Key key)
    {
        QTest::keyClick(popover().window(), key);
        spinOnce();
    }
    [[nodiscard]] QString focusedText()
    {
        const QQuickItem *item = popover().window()->activeFocusItem();
        const QString help = item->property("helpText").toString();
        return help.isEmpty() ? item->property("text").toString() : help;
    }
    void turnToAnotherWindow()
    {
        m_another.resize(200, 100);
        m_another.setPosition(700, 700);
        m_another.show();
        m_another.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_another));
    }
    void storeMany(int count)
    {
        QList<ProtectedItem> items;
        for (int number = 0; number < count; ++number) {
            items.append(namedItem(QStringLiteral("item %1").arg(number)));
        }
        storeCatalogue(services, items);
    }

private:
    std::optional<MenuBarHarness> m_menuBar;
    std::optional<PopoverWindow> m_popover;
    QRasterWindow m_another;
};

} // namespace

TEST_F(PopoverOnScreen, IsBuiltWhenItIsFirstShown)
{
    EXPECT_EQ(popover().window(), nullptr);
    EXPECT_FALSE(popover().isShown());
    popover().performClose();
    EXPECT_EQ(popover().window(), nullptr);
    const QSignalSpy shows(&popover(), &Popover::didShow);
    const QQuickWindow &window = open();
    EXPECT_EQ(window.size(), QSize(300, 400));
    EXPECT_TRUE(popover().isShown());
    EXPECT_EQ(shows.size(), 1);
    EXPECT_NE(window.title(), QStringLiteral("Quillhaven"));
}

TEST_F(PopoverOnScreen, WithoutItemsThereIsNoSummaryAndTheHeaderShowsZero)
{
    open();
    EXPECT_EQ(shownTexts().join(QLatin1Char('|')),
              QStringLiteral("Quillhaven|0 items|No protected items|Quit|Quit|About|About|Preferences|Preferences"));
}

TEST_F(PopoverOnScreen, WithItemsItShowsTheSummaryTheRowsAndTheFooterInOrder)
{
    storeThree();
    open();
    QStringList texts = shownTexts();
    texts.removeIf([](const QString &text) { return text.startsWith(QLatin1Char('/')); });
    EXPECT_EQ(texts.join(QLatin1Char('|')),
              QStringLiteral("Quillhaven|3 items|1 Active|2 Secured|alpha.txt|Secured|bravo.png|Active|charlie|Secured|"
                             "Quit|Quit|About|About|Preferences|Preferences"));
}

TEST_F(PopoverOnScreen, ClosesOnEscape)
{
    storeThree();
    open();
    const QSignalSpy closes(&popover(), &Popover::didClose);
    type(Qt::Key_Escape);
    EXPECT_FALSE(popover().isShown());
    EXPECT_EQ(closes.size(), 1);
}

TEST_F(PopoverOnScreen, ClosesWhenTheUserTurnsToAnotherWindow)
{
    open();
    turnToAnotherWindow();
    EXPECT_TRUE(spinUntil([this] { return !popover().window()->isVisible(); }));
}

TEST_F(PopoverOnScreen, CountsAsShownWhileTheClickThatClosedItMayArriveOnTheStatusItem)
{
    open();
    turnToAnotherWindow();
    ASSERT_TRUE(spinUntil([this] { return !popover().window()->isVisible(); }));
    services.clock.advance(199ms);
    EXPECT_TRUE(popover().isShown());
    services.clock.advance(1ms);
    EXPECT_FALSE(popover().isShown());
}

TEST_F(PopoverOnScreen, AfterASecondClickHasClosedItTheNextOneShowsItAtOnce)
{
    open();
    turnToAnotherWindow();
    ASSERT_TRUE(spinUntil([this] { return !popover().window()->isVisible(); }));
    popover().performClose();
    EXPECT_FALSE(popover().isShown());
}

TEST_F(PopoverOnScreen, TabReachesEveryControl)
{
    storeThree();
    open();
    QStringList reached;
    for (int presses = 0; presses < 5; ++presses) {
        type(Qt::Key_Tab);
        reached.append(focusedText());
    }
    EXPECT_EQ(reached.join(QLatin1Char('|')), QStringLiteral("Quit|About|Preferences|Open Quillhaven|"));
}

TEST_F(PopoverOnScreen, ArrowsChooseARowAndSpaceTogglesIt)
{
    const QString path = services.home.write(QStringLiteral("papers/will.txt"));
    storeThree();
    started().protect(path);
    open();
    for (int presses = 0; presses < 3; ++presses) {
        type(Qt::Key_Down);
    }
    type(Qt::Key_Space);
    DashboardHarness::settle();
    EXPECT_EQ(started().passwordDialog.message(), QStringLiteral("Enter the password for 'will.txt':"));
    EXPECT_TRUE(started().passwordDialog.isPresented());
}

TEST_F(PopoverOnScreen, AClickOnARowTogglesIt)
{
    started().protect(services.home.write(QStringLiteral("papers/will.txt")));
    QQuickWindow &window = open();
    window.grabWindow();
    QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(150, 110));
    DashboardHarness::settle();
    EXPECT_TRUE(started().passwordDialog.isPresented());
}

TEST_F(PopoverOnScreen, AThousandItemsScrollToTheLast)
{
    storeMany(1000);
    open();
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("item 0")));
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("item 999")));
    type(Qt::Key_End);
    EXPECT_TRUE(shownTexts().contains(QStringLiteral("item 999")));
    EXPECT_FALSE(shownTexts().contains(QStringLiteral("item 0")));
}

TEST_F(PopoverOnScreen, AFailureIsShownInThePopover)
{
    started().protect(services.home.write(QStringLiteral("papers/will.txt")));
    ASSERT_TRUE(QFile::remove(started().item().originalBackupPath));
    open();
    type(Qt::Key_Space);
    DashboardHarness::settle();
    started().typePassword(strongPassword);
    ASSERT_TRUE(menuBar().model.showingError());
    EXPECT_TRUE(spinUntil([this] { return shownTexts().contains(menuBar().model.errorMessage()); }));
    EXPECT_TRUE(popover().isShown());
    type(Qt::Key_Escape);
    EXPECT_FALSE(menuBar().model.showingError());
    EXPECT_TRUE(popover().isShown());
}

TEST_F(PopoverOnScreen, AQuestionInItFitsIntoIt)
{
    started().protect(services.home.write(QStringLiteral("papers/will.txt")));
    runTask(started().masterPassword.setMasterPassword(theMasterPassword));
    started().masterPassword.endSession();
    const QQuickWindow &window = open();
    type(Qt::Key_Space);
    DashboardHarness::settle();
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    ASSERT_TRUE(spinUntil([this] { return shownTexts().contains(QStringLiteral("Authenticate")); }));
    const QRectF whole(QPointF(), window.size());
    for (QQuickItem *item : visibleItems(window.contentItem())) {
        if (!item->property("text").toString().isEmpty()) {
            EXPECT_TRUE(whole.contains(item->mapRectToScene(item->boundingRect())))
                << qUtf8Printable(item->property("text").toString());
        }
    }
}

TEST_F(PopoverOnScreen, AQuestionMovesToTheMainWindowWhenThePopoverHasGone)
{
    started().protect(services.home.write(QStringLiteral("papers/will.txt")));
    built();
    open();
    type(Qt::Key_Space);
    DashboardHarness::settle();
    ASSERT_EQ(sheets().questionWindow()->window(), popover().window());
    turnToAnotherWindow();
    ASSERT_TRUE(spinUntil([this] { return !popover().window()->isVisible(); }));
    EXPECT_EQ(sheets().questionWindow()->window(), built().window());
    EXPECT_TRUE(built().isVisible());
}

TEST_F(PopoverOnScreen, ClosesWhenItsQuestionJoinsAnotherInTheMainWindow)
{
    started().protect(services.home.write(QStringLiteral("papers/will.txt")));
    shown();
    started().confirmationDialog.show({.title = QStringLiteral("A question"), .message = {}});
    ASSERT_EQ(sheets().questionWindow()->window(), built().window());
    open();
    type(Qt::Key_Space);
    DashboardHarness::settle();
    ASSERT_TRUE(started().passwordDialog.isPresented());
    EXPECT_EQ(sheets().questionWindow()->window(), built().window());
    EXPECT_TRUE(spinUntil([this] { return QGuiApplication::focusWindow() == built().window(); }));
    EXPECT_TRUE(spinUntil([this] { return !popover().window()->isVisible(); }));
}

TEST_F(PopoverOnScreen, ClosesWhenTheMainWindowIsToComeForward)
{
    open();
    menuBar().model.bringMainWindowForward();
    EXPECT_FALSE(popover().isShown());
}

TEST(PopoverPlace, IsBelowThePointerInTheUpperHalfAndAboveItInTheLower)
{
    const QRect screen(0, 0, 1600, 1200);
    const QSize size(300, 400);
    EXPECT_EQ(popoverPosition({800, 100}, size, screen), QPoint(650, 108));
    EXPECT_EQ(popoverPosition({800, 1100}, size, screen), QPoint(650, 692));
}

TEST(PopoverPlace, StaysInsideWhatThePanelsLeave)
{
    const QRect available(40, 32, 1560, 1128);
    const QSize size(300, 400);
    EXPECT_EQ(popoverPosition({5, 5}, size, available), QPoint(48, 40));
    EXPECT_EQ(popoverPosition({1599, 1199}, size, available), QPoint(1292, 752));
}

TEST(PopoverPlace, OfAScreenThatIsTooSmallStartsAtItsBeginning)
{
    EXPECT_EQ(popoverPosition({100, 100}, {300, 400}, {0, 0, 200, 200}), QPoint(8, 8));
}
