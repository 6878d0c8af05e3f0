// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginSettingsObserver.h"

#include <type_traits>

namespace quillhaven {

/// The start at login, for the rest of the program: the manager, the observer that keeps it in step with the setting,
/// and a mirror of both. Main thread only.
class LaunchAtLoginServiceManager : public QObject
{
    Q_OBJECT

public:
    /// Starts a job that looks at the system and applies the setting to it. The platform's services must outlive this
    /// object, and this object must outlive the operations that it started. Without a service the platform's is taken.
    explicit LaunchAtLoginServiceManager(const Platform &platform,
                                         std::unique_ptr<LaunchAtLoginService> launchAtLoginService = nullptr,
                                         QObject *parent = nullptr);
    ~LaunchAtLoginServiceManager() override;

    /// Defined in the program only.
    static LaunchAtLoginServiceManager &shared();

    [[nodiscard]] LaunchAtLoginManager &manager() { return m_manager; }
    [[nodiscard]] LaunchAtLoginSettingsObserver &observer() { return m_observer; }

    [[nodiscard]] bool isEnabled() const { return m_isEnabled; }
    [[nodiscard]] SyncStatus syncStatus() const { return m_syncStatus; }
    /// The observer's error, or else the manager's.
    [[nodiscard]] const std::optional<LaunchAtLoginError> &lastError() const { return m_lastError; }
    /// Whether a synchronization or a change of the registration is under way.
    [[nodiscard]] bool isSyncing() const { return m_isSyncing; }
    [[nodiscard]] bool isSystemSupported() const { return m_isSystemSupported; }
    [[nodiscard]] bool checkSystemSupport() const { return m_isSystemSupported; }

    /// Changes the registration; the setting follows. Throws a LaunchAtLoginError.
    [[nodiscard]] QCoro::Task<> setLaunchAtLogin(bool enabled);
    [[nodiscard]] QCoro::Task<> forceSynchronization();
    [[nodiscard]] QCoro::Task<> refreshStatus();
    void clearError();
    /// See LaunchAtLoginManager.
    [[nodiscard]] QCoro::Task<bool> testLaunchAtLogin();

Q_SIGNALS:
    void isEnabledChanged();
    void syncStatusChanged();
    void lastErrorChanged();
    void isSyncingChanged();
    void isSystemSupportedChanged();

private:
    void setupBindings();
    template <typename Value>
    void assign(Value &field, const std::type_identity_t<Value> &value, void (LaunchAtLoginServiceManager::*changed)())
    {
        if (field != value) {
            field = value;
            Q_EMIT(this->*changed)();
        }
    }
    /// The registration holds the arguments of the start, so it is written again when they change.
    void observeHiddenStart();
    [[nodiscard]] QCoro::Task<> synchronizeAtLaunch();
    [[nodiscard]] QCoro::Task<> registerAgain();

    UserDefaults &m_defaults;
    LaunchAtLoginManager m_manager;
    LaunchAtLoginSettingsObserver m_observer;
    std::optional<LaunchAtLoginError> m_lastError;
    SyncStatus m_syncStatus = SyncStatus::unknown;
    bool m_isEnabled = false;
    bool m_isSyncing = false;
    bool m_isSystemSupported = true;
};

} // namespace quillhaven
