// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginService.h"
#include "launch_at_login/LaunchAtLoginState.h"

#include <QObject>

#include <exception>

namespace quillhaven {

class Clock;

/// What a manager offers to those who observe it.
class LaunchAtLoginManaging
{
public:
    LaunchAtLoginManaging() = default;
    virtual ~LaunchAtLoginManaging() = default;
    LaunchAtLoginManaging(const LaunchAtLoginManaging &) = delete;
    LaunchAtLoginManaging &operator=(const LaunchAtLoginManaging &) = delete;

    [[nodiscard]] virtual bool isEnabled() const = 0;
    /// Whether a change of the registration is under way.
    [[nodiscard]] virtual bool isUpdating() const = 0;
    /// Registers the program, or ends its registration. Throws a LaunchAtLoginError.
    [[nodiscard]] virtual QCoro::Task<> setLaunchAtLogin(bool enabled) = 0;
    /// Asks the system, and returns whether the program is registered.
    [[nodiscard]] virtual QCoro::Task<bool> checkCurrentStatus() = 0;
    /// The same, without the result.
    [[nodiscard]] virtual QCoro::Task<> refreshStatus() = 0;
};

/// Registers the program and keeps an observable account of what the system says. Main thread only; calls that overlap
/// are not excluded.
class LaunchAtLoginManager : public QObject, public LaunchAtLoginManaging
{
    Q_OBJECT

public:
    /// Without an identifier the application's is taken, and without a service the one for the platform. The platform's
    /// services must outlive this object, and this object must outlive the operations that it started.
    explicit LaunchAtLoginManager(const Platform &platform, const std::optional<QString> &bundleIdentifier = {},
                                  std::unique_ptr<LaunchAtLoginService> launchAtLoginService = nullptr,
                                  QObject *parent = nullptr);
    ~LaunchAtLoginManager() override;

    [[nodiscard]] bool isEnabled() const override { return m_isEnabled; }
    /// The failure of the last change; cleared by the next one.
    [[nodiscard]] const std::optional<LaunchAtLoginError> &lastError() const { return m_lastError; }
    [[nodiscard]] const LaunchAtLoginState &currentState() const { return m_currentState; }
    [[nodiscard]] bool isUpdating() const override { return m_isUpdating; }
    [[nodiscard]] bool isSystemSupported() const { return m_isSystemSupported; }
    [[nodiscard]] QString bundleIdentifier() const { return m_bundleIdentifier; }

    [[nodiscard]] QCoro::Task<> setLaunchAtLogin(bool enabled) override;
    [[nodiscard]] QCoro::Task<bool> checkCurrentStatus() override;
    [[nodiscard]] QCoro::Task<> refreshStatus() override;
    /// Clears `lastError`; `currentState` keeps its error.
    void clearError();
    /// Registers the program, asks whether it is registered, and ends the registration, whatever it was before.
    [[nodiscard]] QCoro::Task<bool> testLaunchAtLogin();

    /// Turns any error into one of this subsystem: a std::system_error by its code and the name of its category.
    [[nodiscard]] static LaunchAtLoginError mapError(const std::exception_ptr &error);

Q_SIGNALS:
    void isEnabledChanged();
    void lastErrorChanged();
    void currentStateChanged();
    void isUpdatingChanged();
    void isSystemSupportedChanged();

private:
    struct StateChange
    {
        std::optional<bool> isEnabled;
        std::optional<SystemStatus> systemStatus;
        std::optional<LaunchAtLoginError> errorState; ///< nothing keeps the error
    };

    void updateState(const StateChange &change);
    void handleError(const LaunchAtLoginError &error);
    void setIsEnabled(bool value);
    void setIsUpdating(bool value);
    void setLastError(const std::optional<LaunchAtLoginError> &error);

    Clock &m_clock;
    const QString m_bundleIdentifier;
    const std::unique_ptr<LaunchAtLoginService> m_launchAtLoginService;
    LaunchAtLoginState m_currentState;
    std::optional<LaunchAtLoginError> m_lastError;
    bool m_isEnabled = false;
    bool m_isUpdating = false;
    bool m_isSystemSupported = true;
};

} // namespace quillhaven
