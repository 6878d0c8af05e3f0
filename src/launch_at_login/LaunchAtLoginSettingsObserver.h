// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginManager.h"
#include "launch_at_login/SyncStatus.h"
#include "settings/Settings.h"

#include <memory>

namespace quillhaven {

/// Keeps the user's setting `startAtLogin` and the system's registration in step. A change of the setting is applied to
/// the system; a change that the manager has seen in the system overwrites the setting. Main thread only.
class LaunchAtLoginSettingsObserver : public QObject
{
    Q_OBJECT

public:
    /// Subscribes at once. The references must outlive this object, and this object must outlive the operations that it
    /// started.
    LaunchAtLoginSettingsObserver(LaunchAtLoginManager &manager, UserDefaults &defaults, Clock &clock,
                                  QObject *parent = nullptr);

    ~LaunchAtLoginSettingsObserver() override;

    [[nodiscard]] SyncStatus syncStatus() const { return m_syncStatus; }
    [[nodiscard]] bool isSyncing() const { return m_isSyncing; }
    [[nodiscard]] const std::optional<LaunchAtLoginError> &lastSyncError() const { return m_lastSyncError; }
    [[nodiscard]] LaunchAtLoginManager &manager() const { return m_manager; }
    [[nodiscard]] bool lastKnownSystemState() const { return m_lastKnownSystemState; }
    [[nodiscard]] bool lastKnownSettingsState() const { return m_lastKnownSettingsState; }

    /// Subscribes again, and gets the present values again.
    void startObserving();
    /// Drops every subscription. Jobs that have started go on.
    void stopObserving();

    /// Applies the setting to the system: if they differ or `forced` is set. Gives up at once while another
    /// synchronization runs. A failure is reported by `lastSyncError` and `syncStatus` only.
    [[nodiscard]] QCoro::Task<> performSynchronization(bool forced);
    [[nodiscard]] QCoro::Task<> forceSynchronization();
    /// Starts a synchronization in a job.
    void startInitialSync();
    void clearSyncError();

    static constexpr QLatin1String settingsKey = settings::startAtLogin.key;

Q_SIGNALS:
    void syncStatusChanged();
    void isSyncingChanged();
    void lastSyncErrorChanged();

private:
    void observeSettingChanges();
    void observeManagerChanges();
    void setupDebouncedSync();
    [[nodiscard]] QCoro::Task<> handleSettingChange(bool newValue);
    [[nodiscard]] QCoro::Task<> handleManagerStateChange(bool newValue);
    [[nodiscard]] QCoro::Task<> syncSystemStateToSettings(bool enabled);
    /// Waits for the change of the registration, reports how it went, and ends the synchronization.
    [[nodiscard]] QCoro::Task<> applyToSystem(bool enabled);
    void reportFailure(const std::exception_ptr &failure);
    void setSyncStatus(SyncStatus value);
    void setIsSyncing(bool value);
    void setLastSyncError(const std::optional<LaunchAtLoginError> &error);

    LaunchAtLoginManager &m_manager;
    UserDefaults &m_defaults;
    Clock &m_clock;
    std::unique_ptr<QObject> m_cancellables; ///< the context of all subscriptions
    std::optional<LaunchAtLoginError> m_lastSyncError;
    SyncStatus m_syncStatus = SyncStatus::unknown;
    bool m_isSyncing = false;
    bool m_lastKnownSystemState = false;
    bool m_lastKnownSettingsState = false;
    bool m_hasSystemAnswered = false; ///< the manager's value is no longer the one it began with
};

} // namespace quillhaven
