// SPDX-License-Identifier: GPL-3.0-or-later

#include "PanelFixture.h"
#include "platform/widgets/QtApplicationPresence.h"

#include <QGuiApplication>
#include <QRasterWindow>

namespace quillhaven {
namespace {

using test::spinUntil;

class ApplicationPresenceOfQt : public test::PanelFixture
{
protected:
    ApplicationPresenceOfQt()
    {
        for (QRasterWindow *window : {&main, &other}) {
            window->resize(300, 200);
        }
        main.setTitle(QStringLiteral("Main"));
        other.setTitle(QStringLiteral("Other"));
        presence.setMainWindow(&main);
    }

    void show(QWindow &window)
    {
        window.show();
        // The window manager may refuse the focus to a window that it has just mapped; asking again is what a click
        // does.
        EXPECT_TRUE(spinUntil([&] {
            if (window.isExposed() && !window.isActive()) {
                window.requestActivate();
            }
            return window.isExposed() && window.isActive();
        }));
    }

    QtApplicationPresence presence;
    QRasterWindow main;
    QRasterWindow other;
};

TEST_F(ApplicationPresenceOfQt, WithoutAShownWindowNoWindowIsVisible)
{
    main.create();
    EXPECT_FALSE(presence.hasVisibleWindows());
}

TEST_F(ApplicationPresenceOfQt, HideHidesOnlyTheMainWindow)
{
    show(main);
    show(other);
    EXPECT_TRUE(presence.hasVisibleWindows());
    presence.hide();
    EXPECT_FALSE(presence.hasVisibleWindows());
    EXPECT_TRUE(spinUntil([&] { return !main.isExposed(); }));
    EXPECT_TRUE(other.isVisible());
    EXPECT_TRUE(other.isExposed());
}

TEST_F(ApplicationPresenceOfQt, TheMainWindowIsInFrontOnlyWhileTheUserWorksInIt)
{
    EXPECT_FALSE(presence.isInFront());
    show(main);
    EXPECT_TRUE(presence.isInFront());
    show(other);
    EXPECT_TRUE(spinUntil([&] { return !presence.isInFront(); })) << "another window has the keyboard";
    show(main);
    EXPECT_TRUE(presence.isInFront());
    presence.hide();
    EXPECT_FALSE(presence.isInFront());
}

TEST_F(ApplicationPresenceOfQt, ADialogOfTheMainWindowCountsAsTheMainWindowInFront)
{
    show(main);
    other.setTransientParent(&main);
    show(other);
    EXPECT_TRUE(presence.isInFront());
}

TEST_F(ApplicationPresenceOfQt, AWindowThatIsNotTheMainOneIsNeitherVisibleNorBroughtForward)
{
    other.setTitle(main.title());
    show(other);
    EXPECT_FALSE(presence.hasVisibleWindows());
    presence.activate();
    EXPECT_FALSE(main.isVisible());
    EXPECT_TRUE(presence.makeKeyAndOrderFront(main.title()));
    EXPECT_TRUE(spinUntil([&] { return QGuiApplication::focusWindow() == &main; }));
    presence.hide();
    EXPECT_TRUE(other.isVisible());
}

TEST_F(ApplicationPresenceOfQt, ActivateRaisesTheMainWindowAndNotAnother)
{
    show(main);
    show(other);
    presence.activate();
    EXPECT_TRUE(spinUntil([&] { return QGuiApplication::focusWindow() == &main; }));
}

TEST_F(ApplicationPresenceOfQt, WithoutAMainWindowNothingHappens)
{
    show(other);
    presence.setMainWindow(nullptr);
    presence.hide();
    presence.activate();
    EXPECT_FALSE(presence.makeKeyAndOrderFront(other.title()));
    EXPECT_FALSE(presence.hasVisibleWindows());
    EXPECT_TRUE(other.isVisible());
}

TEST_F(ApplicationPresenceOfQt, TheWindowWithTheTitleIsBroughtForwardAndActivated)
{
    show(main);
    show(other);
    EXPECT_TRUE(presence.makeKeyAndOrderFront(QStringLiteral("Main")));
    EXPECT_TRUE(spinUntil([&] { return QGuiApplication::focusWindow() == &main; }));
}

TEST_F(ApplicationPresenceOfQt, AHiddenWindowIsShownAgain)
{
    show(main);
    presence.hide();
    EXPECT_TRUE(presence.makeKeyAndOrderFront(QStringLiteral("Main")));
    EXPECT_TRUE(spinUntil([&] { return main.isExposed() && main.isActive(); }));
    EXPECT_TRUE(presence.hasVisibleWindows());
}

TEST_F(ApplicationPresenceOfQt, AnUnknownTitleShowsNothing)
{
    main.create();
    EXPECT_FALSE(presence.makeKeyAndOrderFront(QStringLiteral("main")));
    EXPECT_FALSE(main.isVisible());
}

TEST_F(ApplicationPresenceOfQt, AMinimisedWindowIsNotVisibleAndCanBeRestored)
{
    show(main);
    main.showMinimized();
    EXPECT_TRUE(spinUntil([&] { return !presence.hasVisibleWindows(); }));
    EXPECT_TRUE(presence.makeKeyAndOrderFront(QStringLiteral("Main")));
    EXPECT_TRUE(spinUntil([&] { return main.isExposed() && main.isActive(); }));
    EXPECT_TRUE(presence.hasVisibleWindows());
}

TEST_F(ApplicationPresenceOfQt, ActivateGivesTheKeyboardFocusToAVisibleWindow)
{
    show(main);
    presence.activate();
    EXPECT_TRUE(spinUntil([&] { return QGuiApplication::focusWindow() == &main; }));
}

TEST_F(ApplicationPresenceOfQt, ActivateDoesNotShowHiddenWindows)
{
    show(main);
    presence.hide();
    presence.activate();
    EXPECT_FALSE(presence.hasVisibleWindows());
}

TEST_F(ApplicationPresenceOfQt, AHiddenPanelIsShownAgainWithItsWindow)
{
    const QString file = home.write(QStringLiteral("work/letter.txt"));
    show(main);
    const auto opened = open(request());
    click(QStringLiteral("letter.txt"));
    EXPECT_EQ(panel->windowHandle()->transientParent(), &main);
    presence.hide();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_FALSE(opened.isFinished());
    presence.hide();
    EXPECT_TRUE(presence.makeKeyAndOrderFront(QStringLiteral("Main")));
    presence.activate();
    EXPECT_TRUE(spinUntil([&] { return panel->isVisible() && panel->windowHandle()->isExposed(); }));
    presence.activate();
    QTest::mouseClick(confirmButton(), Qt::LeftButton);
    EXPECT_EQ(chosen(opened), file);
}

TEST_F(ApplicationPresenceOfQt, ThePolicyIsStored)
{
    EXPECT_EQ(presence.activationPolicy(), ApplicationPresence::ActivationPolicy::Regular);
    presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Accessory);
    EXPECT_EQ(presence.activationPolicy(), ApplicationPresence::ActivationPolicy::Accessory);
}

} // namespace
} // namespace quillhaven
