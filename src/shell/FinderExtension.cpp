// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/FinderExtension.h"

#include "async/Answer.h"
#include "async/Jobs.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "platform/NotificationCenter.h"
#include "platform/UrlOpener.h"
#include "platform/UserDefaults.h"
#include "platform/WatchedSources.h"
#include "settings/Settings.h"
#include "shell/RunTool.h"
#include "support/LocalizedError.h"
#include "support/printLogger.h"

#include <QFileInfo>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

const QString identifier = QStringLiteral("com.tarnwick.quillhaven.FinderSync");
const QString enabledMarker = QStringLiteral("+    ") + identifier;

QCoro::Task<ToolEnd> run(FinderExtension::Tool tool, QStringList arguments)
{
    const QStringList all = tool.arguments + arguments;
    return runTool(tool.program, all);
}

/// What is registered for the file managers.
QCoro::Task<QString> listing(FinderExtension::Tool pluginkit)
{
    const QStringList arguments{QStringLiteral("-m"), QStringLiteral("-p"), QStringLiteral("com.apple.FinderSync")};
    const ToolEnd end = co_await run(pluginkit, arguments);
    co_return end.output;
}

QCoro::Task<> wait(Clock &clock, std::chrono::milliseconds delay)
{
    const Answer<bool> isOver;
    const auto timer = clock.startOneShot(delay, [isOver] { isOver.give(true); });
    (void)co_await isOver;
}

/// The file managers that have the menus, as the tool lists them.
QString managersIn(const QString &listing)
{
    const qsizetype begin = listing.indexOf(QLatin1Char('\t'));
    return begin < 0 ? QString() : listing.mid(begin).trimmed();
}

/// Shows the desktop's settings of extensions. Where it has none, the program's own preferences say which file managers
/// have the menus.
void showSettings(const Platform &platform)
{
    const QUrl address(QStringLiteral("x-apple.systempreferences:com.apple.preference.extensions"));
    if (!platform.opener.open(address)) {
        printLogger(QStringLiteral("⚠️ No settings program was found for ") + address.toString());
        platform.notifications.standard.post(notifications::showPreferences);
    }
}

} // namespace

FinderExtension::FinderExtension(const Platform &platform, Places places, Ask ask)
    : m_platform(platform), m_places(std::move(places)), m_ask(std::move(ask))
{
}

FinderExtension::Places FinderExtension::placesBeside(const QString &programFolder)
{
    const QString built = programFolder + QStringLiteral("/extension/bundle");
    const QString bundle =
        QFileInfo::exists(built) ? built : QFileInfo(programFolder).path() + QStringLiteral("/lib/quillhaven");
    const QString tool = bundle + extensionInBundle + QStringLiteral("/quillhaven-pluginkit");
    return {bundle, {tool}, {tool, {QStringLiteral("reload")}}};
}

void FinderExtension::activateFinderExtension()
{
    const QString path = m_places.bundle + extensionInBundle;
    if (!m_platform.fileManager.fileExists(path)) {
        printLogger(QStringLiteral("❌ Finder extension not found at: ") + path);
        m_platform.watched.setState(
            WatchedSources::Source::FileManagerMenus,
            {false, QStringLiteral("The menus for file managers are missing from this installation.")});
        return;
    }
    printLogger(QStringLiteral("🔧 Activating Finder extension at: ") + path);
    startJob([this, path] { return activateExtensionAsync(path); });
}

QCoro::Task<> FinderExtension::activateExtensionAsync(QString path)
{
    try {
        if (co_await checkExtensionStatus()) {
            printLogger(QStringLiteral("✅ Finder extension is already active"));
            co_return;
        }
        const QStringList remove{QStringLiteral("-r"), path};
        (void)co_await run(m_places.pluginkit, remove);
        co_await wait(m_platform.clock, 1s);

        const QStringList add{QStringLiteral("-a"), path};
        const ToolEnd added = co_await run(m_places.pluginkit, add);
        if (added.status != 0) {
            printLogger(QStringLiteral("⚠️ Extension add returned status: ") + QString::number(added.status));
        }
        co_await wait(m_platform.clock, 1s);

        const QStringList enable{QStringLiteral("-e"), QStringLiteral("use"), QStringLiteral("-i"), identifier};
        const ToolEnd enabled = co_await run(m_places.pluginkit, enable);
        if (enabled.status == 0) {
            printLogger(QStringLiteral("✅ Finder extension activation commands completed"));
            co_await wait(m_platform.clock, 2s);
        } else {
            printLogger(QStringLiteral("⚠️ Extension enable returned status: ") + QString::number(enabled.status));
        }
        co_await verifyExtensionStatusAsync();
    } catch (const std::exception &error) {
        printLogger(QStringLiteral("❌ Failed to activate Finder extension: ") + localizedDescription(error));
        describe({});
    }
}

QCoro::Task<bool> FinderExtension::checkExtensionStatus()
{
    try {
        const QString output = co_await listing(m_places.pluginkit);
        const bool isEnabled = output.contains(enabledMarker);
        if (isEnabled) {
            describe(output);
        }
        co_return isEnabled;
    } catch (const std::exception &) {
        co_return false;
    }
}

QCoro::Task<> FinderExtension::verifyExtensionStatusAsync()
{
    QString output;
    try {
        output = co_await listing(m_places.pluginkit);
    } catch (const std::exception &error) {
        printLogger(QStringLiteral("❌ Failed to verify extension status: ") + localizedDescription(error));
        describe({});
        co_return;
    }
    describe(output);
    if (output.contains(enabledMarker)) {
        printLogger(QStringLiteral("✅ Extension is ENABLED and ready"));
        co_await restartFinder();
    } else if (output.contains(identifier)) {
        printLogger(QStringLiteral("⚠️ Extension is installed but DISABLED"));
        printLogger(
            QStringLiteral("📝 User needs to enable it in System Preferences > Extensions > Finder Extensions"));
        showExtensionActivationNotification();
    } else {
        printLogger(QStringLiteral("❌ Extension not found in plugin list"));
    }
}

QCoro::Task<> FinderExtension::restartFinder()
{
    try {
        const ToolEnd end = co_await run(m_places.restart, {});
        printLogger(QStringLiteral("🔄 Finder restarted to load extension"));
        addToDescription(end.output.trimmed());
    } catch (const std::exception &error) {
        printLogger(QStringLiteral("⚠️ Failed to restart Finder: ") + localizedDescription(error));
    }
}

void FinderExtension::showExtensionActivationNotification()
{
    UserDefaults &defaults = m_platform.defaults.standard();
    if (settings::extensionNotificationShown.read(defaults)) {
        return;
    }
    settings::extensionNotificationShown.write(defaults, true);
    m_ask({.title = QStringLiteral("Finder Extension Setup"),
           .message = QStringLiteral("To use Quillhaven's right-click menu in Finder, please enable the extension in "
                                     "System Preferences > Extensions > Finder Extensions."),
           .confirmTitle = QStringLiteral("Open System Preferences"),
           .cancelTitle = QStringLiteral("Later")},
          [platform = m_platform] { showSettings(platform); });
}

/// Says in the preferences what the tool lists.
void FinderExtension::describe(const QString &output) const
{
    const QString managers = managersIn(output);
    const bool isEnabled = output.contains(enabledMarker);
    QString sentence = QStringLiteral("The entries could not be added to every file manager's menu. The log has the "
                                      "reason.");
    if (!output.contains(identifier)) {
        sentence = QStringLiteral("The entries could not be added to the file managers' menus.");
    } else if (isEnabled && managers.isEmpty()) {
        sentence = QStringLiteral("There is no file manager whose menu can have the entries.");
    } else if (isEnabled) {
        sentence = QStringLiteral("The menus of these file managers have the entries: %1.").arg(managers);
    }
    m_platform.watched.setState(WatchedSources::Source::FileManagerMenus, {isEnabled && !managers.isEmpty(), sentence});
}

/// Adds which file managers still have to be closed to have the entries. Some run on without a window.
void FinderExtension::addToDescription(const QString &managers) const
{
    auto state = m_platform.watched.state(WatchedSources::Source::FileManagerMenus);
    if (!state || managers.isEmpty()) {
        return;
    }
    state->sentence +=
        QStringLiteral(" These still run without them: %1. Close them completely, or log out and in again.")
            .arg(managers);
    m_platform.watched.setState(WatchedSources::Source::FileManagerMenus, *state);
}

} // namespace quillhaven
