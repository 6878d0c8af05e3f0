// SPDX-License-Identifier: GPL-3.0-or-later

// Where the questions of the real dashboard and engine are shown: in the real main window, or in a second window.

#include "dashboard/DashboardWindowFixture.h"

#include "platform/widgets/QtApplicationPresence.h"

#include <QQmlComponent>
#include <QQmlEngine>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class SheetHosts : public DashboardWindow
{
protected:
    void TearDown() override
    {
        m_other.reset();
        DashboardWindow::TearDown();
    }

    /// Another window of the program, which also shows sheets.
    QQuickWindow &other()
    {
        if (!m_other) {
            QQmlComponent component(&engine());
            component.setData("import QtQuick.Controls.Basic\nimport Quillhaven\n"
                              "ApplicationWindow {\nid: other\nrequired property SheetModels sheets\n"
                              "title: \"Another\"; width: 700; height: 700\n"
                              "SheetHost { anchors.fill: parent; models: other.sheets }\n}",
                              QUrl());
            EXPECT_TRUE(component.isReady()) << qUtf8Printable(component.errorString());
            m_other.reset(qobject_cast<QQuickWindow *>(
                component.createWithInitialProperties({{QStringLiteral("sheets"), QVariant::fromValue(&sheets())}})));
        }
        return *m_other;
    }
    static void activate(QQuickWindow &window)
    {
        window.show();
        window.requestActivate();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    static bool showsIn(QQuickWindow &window, const char *text)
    {
        if (!window.isVisible()) {
            return false;
        }
        window.grabWindow();
        const QList<QQuickItem *> items = visibleItems(window.contentItem());
        return std::ranges::any_of(items, [text](const QQuickItem *item) {
            return item->property("text").toString() == QString::fromUtf8(text);
        });
    }
    static bool eventuallyShowsIn(QQuickWindow &window, const char *text)
    {
        return spinUntil([&] { return showsIn(window, text); });
    }
    static bool eventuallyHides(QQuickWindow &window, const char *text)
    {
        return spinUntil([&] { return !showsIn(window, text); });
    }
    /// Starts an operation that needs the master password first.
    void askForMasterPassword()
    {
        started().dashboard.protecting()->showProtectionDialog(services.home.write(QStringLiteral("papers/will.pdf")));
        DashboardHarness::settle();
        ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    }
    void cancelMasterPassword()
    {
        started().masterPasswordDialog.cancel();
        DashboardHarness::settle();
    }

    QtApplicationPresence presence;

private:
    std::unique_ptr<QQuickWindow> m_other;
};

const char *const title = "Authentication Required";

} // namespace

TEST_F(SheetHosts, GuardIsShownIfTheWindowIsHidden)
{
    bringForward = [this] { presence.makeKeyAndOrderFront(QStringLiteral("Quillhaven")); };
    storeMasterPassword();
    QQuickWindow &window = *built().window();
    presence.setMainWindow(&window);
    ASSERT_FALSE(window.isVisible());
    askForMasterPassword();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_TRUE(eventuallyShowsIn(window, title));
    // The sheet has the keyboard focus.
    for (const char letter : theMasterPassword.toLatin1()) {
        QTest::keyClick(&window, letter);
    }
    QTest::keyClick(&window, Qt::Key_Return);
    DashboardHarness::settle();
    EXPECT_FALSE(started().masterPasswordDialog.isPresented());
    EXPECT_TRUE(eventuallyShowsIn(window, "Protect will.pdf"));
    started().cancelMethod();
}

TEST_F(SheetHosts, GuardIsShownIfTheWindowWithItsFirstQuestionWasHidden)
{
    bringForward = [this] { presence.makeKeyAndOrderFront(QStringLiteral("Quillhaven")); };
    storeMasterPassword();
    QQuickWindow &window = *shown().window();
    presence.setMainWindow(&window);
    askForMasterPassword();
    const auto endFirst = started().masterPasswordDialog.onCancel;
    window.hide();
    askForMasterPassword();
    EXPECT_TRUE(eventuallyShowsIn(window, title));
    cancelMasterPassword();
    endFirst();
    DashboardHarness::settle();
}

TEST_F(SheetHosts, OnlyTheActiveWindowShowsTheQuestion)
{
    storeMasterPassword();
    QQuickWindow &main = *shown().window();
    activate(other());
    askForMasterPassword();
    EXPECT_TRUE(eventuallyShowsIn(other(), title));
    EXPECT_FALSE(showsIn(main, title));
    cancelMasterPassword();
    EXPECT_TRUE(eventuallyHides(other(), title));

    activate(main);
    askForMasterPassword();
    EXPECT_TRUE(eventuallyShowsIn(main, title));
    EXPECT_FALSE(showsIn(other(), title));
    cancelMasterPassword();
}

TEST_F(SheetHosts, QuestionMovesFromAClosedWindow)
{
    storeMasterPassword();
    QQuickWindow &main = *shown().window();
    main.hide();
    activate(other());
    askForMasterPassword();
    ASSERT_TRUE(eventuallyShowsIn(other(), title));
    other().close();
    EXPECT_TRUE(main.isVisible());
    EXPECT_TRUE(eventuallyShowsIn(main, title));
    cancelMasterPassword();
}

TEST_F(SheetHosts, ProgressIsShownInTheMainWindow)
{
    QQuickWindow &main = *shown().window();
    activate(other());
    OperationProgress &progress = *started().dashboard.bulk()->progress();
    progress.show();
    started().dashboard.protecting()->handleFileSelection(services.home.path(QStringLiteral("absent.txt")));
    EXPECT_TRUE(eventuallyShowsIn(main, "Bulk Operation"));
    EXPECT_TRUE(eventuallyShowsIn(other(), "File or folder does not exist"));
    EXPECT_FALSE(showsIn(other(), "Bulk Operation"));
    EXPECT_FALSE(showsIn(main, "File or folder does not exist"));
    EXPECT_TRUE(sheets().isAnyPresented());
    progress.hide();
    started().dashboard.errorDialogManager()->hideError();
    EXPECT_FALSE(sheets().isAnyPresented());
}

TEST_F(SheetHosts, PreferencesAreShownOnTheirNotification)
{
    shown();
    ASSERT_FALSE(preferences().model.isPresented());
    services.notifications.standard.post(notifications::showPreferences);
    EXPECT_TRUE(eventuallyShowsIn(*built().window(), "Launch at login"));
    preferences().model.handleCloseAttempt();
    EXPECT_TRUE(eventuallyHides(*built().window(), "Launch at login"));
}
