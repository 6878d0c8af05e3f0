// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/AutoLockManager.h"

#include "autolock/LockJobs.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/NotificationCenter.h"
#include "platform/UserDefaults.h"
#include "settings/Settings.h"
#include "support/printLogger.h"

#include <QPointer>

#include <algorithm>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto activityThrottleInterval = 10s;
/// Longer periods count as this one: about a hundred years, which every timer can count.
constexpr qlonglong longestPeriodMinutes = 100LL * 366 * 24 * 60;

/// Scrolling, dragging and the other buttons are no activity.
constexpr InputEvents activity =
    InputEvent::LeftMouseDown | InputEvent::RightMouseDown | InputEvent::MouseMoved | InputEvent::KeyDown;

std::chrono::milliseconds periodOf(qlonglong minutes)
{
    return std::chrono::minutes(std::min(minutes, longestPeriodMinutes));
}

} // namespace

AutoLockManager::AutoLockManager(const Platform &platform, QuillhavenManager &quillhavenManager, QObject *parent)
    : QObject(parent),
      m_platform(platform),
      m_clock(platform.clock),
      m_defaults(platform.defaults.standard()),
      m_lastActivityTime(platform.clock.now()),
      m_lastActivityUpdate(platform.clock.uptime()),
      m_quillhavenManager(quillhavenManager)
{
    m_isAutoLockEnabled = settings::isAutoLockEnabled.read(m_defaults);
    updateAutoLockSettings();
    m_lockOnSleep = settings::lockOnSleep.read(m_defaults);
    setupObservers();
    if (m_isAutoLockEnabled) {
        setIsMonitoring(true);
        resetInactivityTimer();
    }
    printLogger(QStringLiteral("AutoLockManager initialized with auto-lock enabled: ") + printed(m_isAutoLockEnabled));
}

AutoLockManager::~AutoLockManager()
{
    m_globalEventMonitor.reset();
    m_cancellables.clear();
}

void AutoLockManager::setupObservers()
{
    printLogger(QStringLiteral("🔧 AutoLockManager: Setting up observers"));
    settings::autoLockMinutes.onChange(m_defaults, this, [this] { updateAutoLockSettings(); });
    updateAutoLockSettings();
    const auto readLockOnSleep = [this] { setLockOnSleep(settings::lockOnSleep.read(m_defaults)); };
    settings::lockOnSleep.onChange(m_defaults, this, readLockOnSleep);
    readLockOnSleep();
    NotificationCenter &workspace = m_platform.notifications.workspace;
    workspace.observe(notifications::willSleep, this, [this](const QVariantMap &) { handleSystemSleep(); });
    workspace.observe(notifications::didWake, this, [this](const QVariantMap &) { handleSystemWake(); });
    printLogger(QStringLiteral("✅ AutoLockManager: Sleep/wake observers registered"));
    setupGlobalEventMonitoring();
}

void AutoLockManager::setupGlobalEventMonitoring()
{
    UserInput &input = m_platform.input;
    m_globalEventMonitor = input.addGlobalMonitor(activity, [this] { handleUserActivity(); });
    m_cancellables.push_back(input.addLocalMonitor(activity, [this] { handleUserActivity(); }));
}

void AutoLockManager::handleUserActivity()
{
    const auto now = m_clock.uptime();
    if (now - m_lastActivityUpdate < activityThrottleInterval) {
        return;
    }
    m_lastActivityUpdate = now;
    m_lastActivityTime = m_clock.now();
    Q_EMIT lastActivityTimeChanged();
    resetInactivityTimer();
}

void AutoLockManager::resetInactivityTimer()
{
    const qlonglong minutes = getEffectiveAutoLockMinutes();
    m_inactivityTimer = m_isAutoLockEnabled && minutes >= 1
                            ? m_clock.startOneShot(periodOf(minutes), [this] { checkInactivity(); })
                            : nullptr;
}

void AutoLockManager::checkInactivity()
{
    if (m_clock.uptime() - m_lastActivityUpdate >= periodOf(getEffectiveAutoLockMinutes())) {
        lockAllItems(QStringLiteral("after inactivity"));
    }
    resetInactivityTimer();
}

void AutoLockManager::updateAutoLockSettings()
{
    const qlonglong minutes = settings::autoLockMinutes.read(m_defaults);
    setAutoLockMinutes(minutes == 0 ? settings::autoLockMinutes.defaultValue : minutes);
    if (m_isMonitoring) {
        resetInactivityTimer();
    }
}

void AutoLockManager::updateAutoLockInterval(qlonglong minutes)
{
    if (minutes < 1) {
        return;
    }
    setAutoLockMinutes(minutes);
    settings::autoLockMinutes.write(m_defaults, minutes);
    resetInactivityTimer();
}

void AutoLockManager::setAutoLockEnabled(bool enabled)
{
    printLogger(QStringLiteral("AutoLockManager: Setting auto-lock enabled to ") + printed(enabled));
    const bool isChange = m_isAutoLockEnabled != enabled;
    m_isAutoLockEnabled = enabled;
    settings::isAutoLockEnabled.write(m_defaults, enabled);
    if (isChange) {
        Q_EMIT isAutoLockEnabledChanged();
    }
    setIsMonitoring(enabled);
    if (enabled) {
        resetInactivityTimer();
    } else {
        m_inactivityTimer.reset();
    }
    printLogger(QStringLiteral("AutoLockManager: Auto-lock enabled is now ") + printed(m_isAutoLockEnabled));
}

void AutoLockManager::handleSystemSleep()
{
    printLogger(QStringLiteral("🛌 AutoLockManager: System sleep detected"));
    printLogger(QStringLiteral("🛌 AutoLockManager: lockOnSleep setting: ") + printed(m_lockOnSleep));
    if (m_lockOnSleep) {
        printLogger(QStringLiteral("🛌 AutoLockManager: Lock on sleep is enabled, locking all items"));
        lockAllItems(QStringLiteral("before the computer went to sleep"));
    } else {
        printLogger(QStringLiteral("🛌 AutoLockManager: Lock on sleep is disabled, skipping auto-lock"));
    }
}

void AutoLockManager::handleSystemWake()
{
    resetInactivityTimer();
}

void AutoLockManager::lockAllItems(const QString &cause)
{
    const QList<ProtectedItem> unlocked = lockJobs::unlockedItems(m_quillhavenManager);
    printLogger(QStringLiteral("🔒 AutoLockManager: Found ") + QString::number(unlocked.size()) +
                QStringLiteral(" unlocked items to lock"));
    if (unlocked.isEmpty()) {
        printLogger(QStringLiteral("🔒 AutoLockManager: No unlocked items found, nothing to lock"));
        return;
    }
    for (const ProtectedItem &item : unlocked) {
        printLogger(QStringLiteral("🔒 AutoLockManager: Locking item: ") + item.originalName);
    }
    lockJobs::start(m_quillhavenManager, m_defaults, unlocked,
                    {.succeeded =
                         [](const QString &name) {
                             printLogger(QStringLiteral("✅ AutoLockManager: Successfully locked item: ") + name);
                         },
                     .failed =
                         [](const QString &name, const QString &description) {
                             printLogger(QStringLiteral("❌ AutoLockManager: Error auto-locking item ") + name +
                                         QStringLiteral(": ") + description);
                         },
                     .cause = cause,
                     .ended =
                         [self = QPointer(this)](const QString &report) {
                             if (self) {
                                 Q_EMIT self->itemsLocked(report);
                             }
                         }});
}

void AutoLockManager::setIsMonitoring(bool value)
{
    if (m_isMonitoring != value) {
        m_isMonitoring = value;
        Q_EMIT isMonitoringChanged();
    }
}

void AutoLockManager::setAutoLockMinutes(qlonglong value)
{
    if (m_autoLockMinutes != value) {
        m_autoLockMinutes = value;
        Q_EMIT autoLockMinutesChanged();
    }
}

void AutoLockManager::setLockOnSleep(bool value)
{
    if (m_lockOnSleep != value) {
        m_lockOnSleep = value;
        Q_EMIT lockOnSleepChanged();
    }
}

} // namespace quillhaven
