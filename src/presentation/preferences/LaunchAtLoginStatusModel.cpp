// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/LaunchAtLoginStatusModel.h"

#include "platform/Clock.h"

#include <algorithm>

namespace quillhaven {

StatusTone::Case toneOf(SyncStatus status)
{
    switch (status) {
    case SyncStatus::synchronized:
        return StatusTone::Enabled;
    case SyncStatus::outOfSync:
        return StatusTone::Warning;
    case SyncStatus::syncing:
        return StatusTone::Info;
    case SyncStatus::error:
        return StatusTone::Error;
    case SyncStatus::unknown:
        break;
    }
    return StatusTone::Secondary;
}

ShownStatus shownStatus(SyncStatus status, bool isEnabled)
{
    const auto shown = [status](const QString &text) { return ShownStatus{text, iconName(status), toneOf(status)}; };
    switch (status) {
    case SyncStatus::synchronized:
        return isEnabled ? shown(QStringLiteral("Enabled"))
                         : ShownStatus{QStringLiteral("Disabled"), QStringLiteral("circle"), StatusTone::Disabled};
    case SyncStatus::outOfSync:
        return shown(QStringLiteral("Out of sync"));
    case SyncStatus::syncing:
        return shown(QStringLiteral("Synchronizing..."));
    case SyncStatus::error:
        return shown(QStringLiteral("Sync error"));
    case SyncStatus::unknown:
        break;
    }
    return shown(QStringLiteral("Status unknown"));
}

LaunchAtLoginStatusModel::LaunchAtLoginStatusModel(LaunchAtLoginManager &manager,
                                                   LaunchAtLoginSettingsObserver &observer,
                                                   EnhancedLaunchAtLoginErrorHandler &errorHandler, Clock &clock,
                                                   QObject *parent)
    : QObject(parent), m_manager(manager), m_observer(observer), m_errorHandler(errorHandler), m_clock(clock)
{
    connect(&manager, &LaunchAtLoginManager::isUpdatingChanged, this, &LaunchAtLoginStatusModel::changed);
    connect(&manager, &LaunchAtLoginManager::isEnabledChanged, this, &LaunchAtLoginStatusModel::changed);
    connect(&manager, &LaunchAtLoginManager::currentStateChanged, this, &LaunchAtLoginStatusModel::changed);
    connect(&observer, &LaunchAtLoginSettingsObserver::isSyncingChanged, this, &LaunchAtLoginStatusModel::changed);
    connect(&observer, &LaunchAtLoginSettingsObserver::syncStatusChanged, this, &LaunchAtLoginStatusModel::changed);
    connect(&errorHandler, &EnhancedLaunchAtLoginErrorHandler::changed, this, &LaunchAtLoginStatusModel::changed);
}

bool LaunchAtLoginStatusModel::isBusy() const
{
    return m_manager.isUpdating() || m_observer.isSyncing();
}

ShownStatus LaunchAtLoginStatusModel::status() const
{
    if (m_errorHandler.currentError()) {
        return {QStringLiteral("Error occurred"), QStringLiteral("exclamationmark.triangle.fill"), StatusTone::Error};
    }
    if (m_manager.isUpdating()) {
        return {QStringLiteral("Updating..."), {}, StatusTone::Info};
    }
    if (m_observer.isSyncing()) {
        return {QStringLiteral("Synchronizing..."), {}, StatusTone::Info};
    }
    return shownStatus(m_observer.syncStatus(), m_manager.isEnabled());
}

QString LaunchAtLoginStatusModel::lastUpdatedText() const
{
    return QStringLiteral("Last updated: ") + relativeDate(m_manager.currentState().lastUpdated, m_clock.now());
}

QString LaunchAtLoginStatusModel::errorText() const
{
    return m_errorHandler.currentError() ? m_errorHandler.currentError()->errorDescription() : QString();
}

QString LaunchAtLoginStatusModel::suggestionText() const
{
    return m_errorHandler.currentError() ? m_errorHandler.currentError()->recoverySuggestion() : QString();
}

QList<RecoveryAction> LaunchAtLoginStatusModel::actions() const
{
    QList<RecoveryAction> actions = m_errorHandler.recoveryActions();
    actions.removeIf([](const RecoveryAction &each) { return each.action == RecoveryAction::Case::noAction; });
    return actions;
}

QStringList LaunchAtLoginStatusModel::actionTexts() const
{
    QStringList texts;
    std::ranges::transform(actions(), std::back_inserter(texts), &RecoveryAction::description);
    return texts;
}

QStringList LaunchAtLoginStatusModel::actionIcons() const
{
    QStringList icons;
    std::ranges::transform(actions(), std::back_inserter(icons), &RecoveryAction::iconName);
    return icons;
}

void LaunchAtLoginStatusModel::act(int index)
{
    const QList<RecoveryAction> offered = actions();
    if (index >= 0 && index < offered.size()) {
        m_errorHandler.executeRecoveryAction(offered.at(index));
    }
}

QString relativeDate(const QDateTime &moment, const QDateTime &now)
{
    const qint64 seconds = std::max<qint64>(moment.secsTo(now), 0);
    const auto ago = [](qint64 count, const QString &unit) {
        return QStringLiteral("%1 %2%3 ago")
            .arg(QString::number(count), unit, count == 1 ? QString() : QStringLiteral("s"));
    };
    constexpr qint64 minute = 60;
    constexpr qint64 hour = 60 * minute;
    constexpr qint64 day = 24 * hour;
    if (seconds < minute) {
        return seconds == 0 ? QStringLiteral("now") : ago(seconds, QStringLiteral("second"));
    }
    if (seconds < hour) {
        return ago(seconds / minute, QStringLiteral("minute"));
    }
    return seconds < day ? ago(seconds / hour, QStringLiteral("hour")) : ago(seconds / day, QStringLiteral("day"));
}

} // namespace quillhaven
