// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/FinderExtension.h"

#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "settings/Settings.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillhaven::test {

namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString enabledLine = QStringLiteral("+    com.tarnwick.quillhaven.FinderSync(1.0)\tNemo, Dolphin");
const QString disabledLine = QStringLiteral("-    com.tarnwick.quillhaven.FinderSync(1.0)\t");
const QString list = QStringLiteral("pluginkit -m -p com.apple.FinderSync");
const QString enable = QStringLiteral("pluginkit -e use -i com.tarnwick.quillhaven.FinderSync");
const QString restart = QStringLiteral("restart Finder");

/// A bundle, and tools that note how they were called. What they answer is in files.
class FinderExtensionTest : public testing::Test
{
protected:
    FinderExtensionTest()
    {
        QObject::connect(&platform.notifications.standard, &NotificationCenter::posted,
                         [this](const QString &name) { posts << name; });
        platform.home.write(QStringLiteral("bundle/Contents/PlugIns/FinderSyncExtension.appex/tool"));
        const QByteArray folder = QFile::encodeName(platform.home.path());
        makeTool("pluginkit",
                 "#!/bin/sh\ncd '" + folder +
                     "'\necho \"pluginkit $*\" >>calls\n"
                     "case $1 in\n"
                     "-m) cat listing 2>/dev/null ;;\n"
                     "-e) [ ! -e after ] || cp after listing; exit $(cat enable 2>/dev/null || echo 0) ;;\n"
                     "-a) exit $(cat add 2>/dev/null || echo 0) ;;\n"
                     "-r) exit 3 ;;\n"
                     "esac\n");
        makeTool("restart",
                 "#!/bin/sh\ncd '" + folder + "'\necho \"restart $*\" >>calls\ncat open 2>/dev/null\nexit 1\n");
        places = {platform.home.path(QStringLiteral("bundle")),
                  {platform.home.path(QStringLiteral("pluginkit"))},
                  {platform.home.path(QStringLiteral("restart")), {QStringLiteral("Finder")}}};
    }

    void makeTool(const char *name, const QByteArray &script) const
    {
        QFile tool(platform.home.write(QLatin1String(name), script));
        tool.setPermissions(tool.permissions() | QFile::ExeOwner);
    }
    void answer(const char *name, const QString &text) const
    {
        platform.home.write(QLatin1String(name), text.toUtf8());
    }
    [[nodiscard]] FinderExtension extension()
    {
        return {platform.platform(), places, [this](const FinderExtension::Question &question, auto confirm) {
                    questions.append(question);
                    onConfirm = confirm;
                }};
    }
    [[nodiscard]] QString path() const { return places.bundle + FinderExtension::extensionInBundle; }
    [[nodiscard]] QStringList calls() const
    {
        const QString file = platform.home.path(QStringLiteral("calls"));
        return QString::fromUtf8(TemporaryHome::exists(file) ? TemporaryHome::read(file) : QByteArray())
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    /// Runs the registration to its end; returns the waits between its steps, in the order they began.
    QList<std::chrono::milliseconds> registerAndWait(FinderExtension &extension)
    {
        QList<std::chrono::milliseconds> waits;
        const RunningTask<void> task(extension.activateExtensionAsync(path()));
        while (spinUntil([&] { return task.isFinished() || platform.clock.pendingTimers() > 0; }) &&
               !task.isFinished()) {
            waits.append(0ms);
            while (platform.clock.pendingTimers() > 0) {
                platform.clock.advance(1ms);
                waits.last() += 1ms;
            }
        }
        task.wait();
        return waits;
    }
    [[nodiscard]] WatchedSources::State shown() const
    {
        return platform.watched.state(WatchedSources::Source::FileManagerMenus).value();
    }

    TestPlatform platform;
    FinderExtension::Places places;
    QList<FinderExtension::Question> questions;
    std::function<void()> onConfirm;
    QStringList posts; ///< on the program's own centre
    LogCapture log;
};

TEST_F(FinderExtensionTest, AMissingExtensionIsLoggedAndNoToolRuns)
{
    places.bundle = platform.home.path(QStringLiteral("elsewhere"));
    FinderExtension missing = extension();
    missing.activateFinderExtension();
    spinOnce();
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("❌ Finder extension not found at: ") + path()));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_FALSE(shown().isAvailable);
}

TEST_F(FinderExtensionTest, TheLaunchStartsTheRegistrationAsAJob)
{
    answer("listing", enabledLine);
    FinderExtension launched = extension();
    launched.activateFinderExtension();
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("🔧 Activating Finder extension at: ") + path()));
    EXPECT_TRUE(spinUntil([&] { return log.contains(QStringLiteral("✅ Finder extension is already active")); }));
}

TEST_F(FinderExtensionTest, WhenTheExtensionIsAlreadyEnabledAtLaunchTheToolRunsOnceAndNothingIsRestarted)
{
    answer("listing", QStringLiteral("     com.example.other(2.0)\n") + enabledLine);
    FinderExtension enabled = extension();
    EXPECT_THAT(registerAndWait(enabled), IsEmpty());
    EXPECT_THAT(calls(), ElementsAre(list));
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("✅ Finder extension is already active")));
    EXPECT_EQ(shown(), (WatchedSources::State{
                           true, QStringLiteral("The menus of these file managers have the entries: Nemo, Dolphin.")}));
}

TEST_F(FinderExtensionTest, ARegistrationThatEndsEnabledRestartsTheFinderOnce)
{
    answer("after", enabledLine);
    FinderExtension registered = extension();
    EXPECT_THAT(registerAndWait(registered), ElementsAre(1s, 1s, 2s));
    EXPECT_THAT(calls(), ElementsAre(list, QStringLiteral("pluginkit -r ") + path(),
                                     QStringLiteral("pluginkit -a ") + path(), enable, list, restart));
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("✅ Finder extension activation commands completed"),
                                         QStringLiteral("✅ Extension is ENABLED and ready"),
                                         QStringLiteral("🔄 Finder restarted to load extension")));
    EXPECT_THAT(questions, IsEmpty());
    EXPECT_TRUE(shown().isAvailable);
}

TEST_F(FinderExtensionTest, FileManagersThatHaveToBeClosedFirstAreNamed)
{
    answer("after", enabledLine);
    answer("open", QStringLiteral("Nautilus, Caja\n"));
    FinderExtension registered = extension();
    registerAndWait(registered);
    EXPECT_EQ(
        shown().sentence,
        QStringLiteral("The menus of these file managers have the entries: Nemo, Dolphin. These still run without "
                       "them: Nautilus, Caja. Close them completely, or log out and in again."));
}

TEST_F(FinderExtensionTest, AFailedAddIsLoggedAndTheSequenceGoesOn)
{
    answer("add", QStringLiteral("5"));
    answer("after", enabledLine);
    FinderExtension registered = extension();
    EXPECT_THAT(registerAndWait(registered), ElementsAre(1s, 1s, 2s));
    EXPECT_EQ(log.lines().constFirst(), QStringLiteral("⚠️ Extension add returned status: 5"));
    EXPECT_TRUE(calls().contains(enable));
}

TEST_F(FinderExtensionTest, AFailedEnableIsVerifiedAtOnceAndTheHintIsShown)
{
    answer("enable", QStringLiteral("7"));
    answer("after", disabledLine);
    FinderExtension registered = extension();
    EXPECT_THAT(registerAndWait(registered), ElementsAre(1s, 1s));
    EXPECT_THAT(log.lines(),
                ElementsAre(QStringLiteral("⚠️ Extension enable returned status: 7"),
                            QStringLiteral("⚠️ Extension is installed but DISABLED"),
                            QStringLiteral("📝 User needs to enable it in System Preferences > Extensions > Finder "
                                           "Extensions")));
    EXPECT_FALSE(calls().contains(restart));
    EXPECT_FALSE(shown().isAvailable);
    ASSERT_EQ(questions.size(), 1);
    EXPECT_EQ(questions[0].title, QStringLiteral("Finder Extension Setup"));
}

TEST_F(FinderExtensionTest, AnExtensionThatIsNotListedIsOnlyLogged)
{
    FinderExtension registered = extension();
    registerAndWait(registered);
    EXPECT_EQ(log.lines().constLast(), QStringLiteral("❌ Extension not found in plugin list"));
    EXPECT_FALSE(calls().contains(restart));
    EXPECT_THAT(questions, IsEmpty());
}

TEST_F(FinderExtensionTest, AToolThatCannotBeStartedEndsTheSequence)
{
    places.pluginkit.program = platform.home.path(QStringLiteral("no-such-tool"));
    FinderExtension registered = extension();
    EXPECT_FALSE(runTask(registered.checkExtensionStatus()));
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(registerAndWait(registered), IsEmpty());
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().constFirst().startsWith(QStringLiteral("❌ Failed to activate Finder extension: ")));
    EXPECT_EQ(shown(), (WatchedSources::State{
                           false, QStringLiteral("The entries could not be added to the file managers' menus.")}));
}

TEST_F(FinderExtensionTest, AToolThatCannotBeStartedForTheVerificationIsLogged)
{
    places.pluginkit.program = platform.home.path(QStringLiteral("no-such-tool"));
    FinderExtension registered = extension();
    runTask(registered.verifyExtensionStatusAsync());
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().constFirst().startsWith(QStringLiteral("❌ Failed to verify extension status: ")));
}

TEST_F(FinderExtensionTest, ARestartThatCannotBeStartedIsLogged)
{
    places.restart.program = platform.home.path(QStringLiteral("no-such-tool"));
    FinderExtension registered = extension();
    runTask(registered.restartFinder());
    ASSERT_EQ(log.lines().size(), 1);
    EXPECT_TRUE(log.lines().constFirst().startsWith(QStringLiteral("⚠️ Failed to restart Finder: ")));
}

TEST_F(FinderExtensionTest, TheHintIsShownOnceInTheLifeOfTheSettings)
{
    FinderExtension first = extension();
    first.showExtensionActivationNotification();
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(settings::extensionNotificationShown.read(platform.defaults.standard()));
    EXPECT_EQ(questions[0].title, QStringLiteral("Finder Extension Setup"));
    EXPECT_EQ(questions[0].message,
              QStringLiteral("To use Quillhaven's right-click menu in Finder, please enable the extension in System "
                             "Preferences > Extensions > Finder Extensions."));
    EXPECT_EQ(questions[0].confirmTitle, QStringLiteral("Open System Preferences"));
    EXPECT_EQ(questions[0].cancelTitle, QStringLiteral("Later"));
    first.showExtensionActivationNotification();
    FinderExtension ofLaterLaunch = extension();
    ofLaterLaunch.showExtensionActivationNotification();
    EXPECT_EQ(questions.size(), 1);
}

TEST_F(FinderExtensionTest, TheHintIsRememberedBeforeItIsShown)
{
    bool wasRemembered = false;
    FinderExtension asking(platform.platform(), places, [&](const FinderExtension::Question &, const auto &) {
        wasRemembered = settings::extensionNotificationShown.read(platform.defaults.standard());
    });
    asking.showExtensionActivationNotification();
    EXPECT_TRUE(wasRemembered);
}

TEST_F(FinderExtensionTest, ConfirmingTheHintOpensTheSettings)
{
    FinderExtension asking = extension();
    asking.showExtensionActivationNotification();
    EXPECT_THAT(platform.opener.opened, IsEmpty());
    onConfirm();
    EXPECT_THAT(platform.opener.opened,
                ElementsAre(QUrl(QStringLiteral("x-apple.systempreferences:com.apple.preference.extensions"))));
    EXPECT_THAT(posts, IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FinderExtensionTest, OnADesktopWithoutSuchSettingsConfirmingTheHintShowsTheProgramsOwn)
{
    platform.opener.canOpen = false;
    FinderExtension asking = extension();
    asking.showExtensionActivationNotification();
    EXPECT_THAT(posts, IsEmpty());
    onConfirm();
    EXPECT_THAT(posts, ElementsAre(notifications::showPreferences));
    EXPECT_THAT(log.lines(), ElementsAre(QStringLiteral("⚠️ No settings program was found for "
                                                        "x-apple.systempreferences:com.apple.preference.extensions")));
}

TEST_F(FinderExtensionTest, ThePlacesBelongToTheInstallationOrTheBuildOfTheProgram)
{
    const QString installed = platform.home.path(QStringLiteral("usr/bin"));
    EXPECT_EQ(FinderExtension::placesBeside(installed).bundle,
              platform.home.path(QStringLiteral("usr/lib/quillhaven")));
    platform.home.write(QStringLiteral("src/extension/bundle/file"));
    const FinderExtension::Places built = FinderExtension::placesBeside(platform.home.path(QStringLiteral("src")));
    EXPECT_EQ(built.bundle, platform.home.path(QStringLiteral("src/extension/bundle")));
    EXPECT_EQ(built.pluginkit.program,
              built.bundle + QStringLiteral("/Contents/PlugIns/FinderSyncExtension.appex/quillhaven-pluginkit"));
    EXPECT_EQ(built.restart.program, built.pluginkit.program);
}

} // namespace

} // namespace quillhaven::test
