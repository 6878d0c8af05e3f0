// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Platform.h"
#include "platform/UserInput.h"

#include <QDateTime>
#include <QObject>

#include <chrono>
#include <memory>
#include <vector>

namespace quillhaven {

class Clock;
class QuillhavenManager;
class RunningTimer;
class UserDefaults;

/// Locks every unlocked item after a period without input and, when the user asked for it, before the computer goes to
/// sleep. The two switches are independent. A lock that fails is logged, and the next firing tries again. Main thread
/// only.
///
/// The input monitors are installed for the life of the object, and a throttle lets one activity through in ten
/// seconds. A period can therefore end up to ten seconds before it has passed since the very last input.
class AutoLockManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool isMonitoring READ isMonitoring NOTIFY isMonitoringChanged)
    Q_PROPERTY(QDateTime lastActivityTime READ lastActivityTime NOTIFY lastActivityTimeChanged)
    Q_PROPERTY(bool isAutoLockEnabled READ isAutoLockEnabled NOTIFY isAutoLockEnabledChanged)
    Q_PROPERTY(qlonglong autoLockMinutes READ autoLockMinutes NOTIFY autoLockMinutesChanged)
    Q_PROPERTY(bool lockOnSleep READ lockOnSleep NOTIFY lockOnSleepChanged)

public:
    /// Reads the settings, subscribes, and starts the timer when the user has switched it on. The references must
    /// outlive this object, and the engine also the jobs that this object starts.
    AutoLockManager(const Platform &platform, QuillhavenManager &quillhavenManager, QObject *parent = nullptr);
    ~AutoLockManager() override;

    /// Defined in the program only.
    static AutoLockManager &shared();

    /// Whether items are locked after the period.
    [[nodiscard]] bool isMonitoring() const { return m_isMonitoring; }
    /// When the last activity passed the throttle.
    [[nodiscard]] QDateTime lastActivityTime() const { return m_lastActivityTime; }
    [[nodiscard]] bool isAutoLockEnabled() const { return m_isAutoLockEnabled; }
    [[nodiscard]] qlonglong autoLockMinutes() const { return m_autoLockMinutes; }
    [[nodiscard]] bool lockOnSleep() const { return m_lockOnSleep; }

    /// Stores the switch, and starts or stops the timer.
    Q_INVOKABLE void setAutoLockEnabled(bool enabled);
    /// Stores another period, in minutes, which begins now. A value below 1 is ignored.
    Q_INVOKABLE void updateAutoLockInterval(qlonglong minutes);
    /// The period in force, in minutes.
    [[nodiscard]] qlonglong getEffectiveAutoLockMinutes() const { return m_autoLockMinutes; }

Q_SIGNALS:
    /// All locks of one run have ended, and these sentences say what became of the items. Not emitted when none was
    /// locked and none failed.
    void itemsLocked(const QString &report);
    void isMonitoringChanged();
    void lastActivityTimeChanged();
    void isAutoLockEnabledChanged();
    void autoLockMinutesChanged();
    void lockOnSleepChanged();

private:
    void setupObservers();
    void setupGlobalEventMonitoring();
    void updateAutoLockSettings();
    void handleUserActivity();
    void handleSystemSleep();
    void handleSystemWake();
    void resetInactivityTimer();
    void checkInactivity();
    /// `cause` is that of the report.
    void lockAllItems(const QString &cause);

    void setIsMonitoring(bool value);
    void setAutoLockMinutes(qlonglong value);
    void setLockOnSleep(bool value);

    Platform m_platform;
    Clock &m_clock;
    UserDefaults &m_defaults;

    bool m_isMonitoring = false;
    QDateTime m_lastActivityTime;
    bool m_isAutoLockEnabled = false;
    qlonglong m_autoLockMinutes = 5;
    bool m_lockOnSleep = false;
    std::chrono::nanoseconds m_lastActivityUpdate; ///< the same moment, on a clock that nobody sets
    std::unique_ptr<RunningTimer> m_inactivityTimer;
    std::vector<std::unique_ptr<UserInput::Monitor>> m_cancellables;
    QuillhavenManager &m_quillhavenManager;
    std::unique_ptr<UserInput::Monitor> m_globalEventMonitor;
};

} // namespace quillhaven
