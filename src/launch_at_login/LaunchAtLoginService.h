// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "launch_at_login/LaunchAtLoginError.h"

#include <QCoroTask>

#include <memory>
#include <optional>

namespace quillhaven {

class LoginItem;
class UserDefaults;
struct Platform;

/// A back end that registers the program to be started at login. Main thread only.
class LaunchAtLoginService
{
public:
    LaunchAtLoginService() = default;
    virtual ~LaunchAtLoginService() = default;
    LaunchAtLoginService(const LaunchAtLoginService &) = delete;
    LaunchAtLoginService &operator=(const LaunchAtLoginService &) = delete;

    /// Throws a LaunchAtLoginError.
    [[nodiscard]] virtual QCoro::Task<> registerApp() = 0;
    /// Throws a LaunchAtLoginError.
    [[nodiscard]] virtual QCoro::Task<> unregister() = 0;
    [[nodiscard]] virtual QCoro::Task<bool> isRegistered() = 0;
};

/// The registration with the platform.
class ModernLaunchAtLoginService : public LaunchAtLoginService
{
public:
    /// The start at login gets an argument while `defaults` asks for a hidden start. The references must outlive this
    /// object.
    ModernLaunchAtLoginService(const QString &bundleIdentifier, LoginItem &service, const UserDefaults &defaults);

    [[nodiscard]] QString bundleIdentifier() const { return m_bundleIdentifier; }

    /// Failures are `registrationFailed`, with the description of the platform's error.
    [[nodiscard]] QCoro::Task<> registerApp() override;
    /// Failures are `unregistrationFailed`, with the description of the platform's error.
    [[nodiscard]] QCoro::Task<> unregister() override;
    /// True if the platform will start the program; a registration that is switched off does not count.
    [[nodiscard]] QCoro::Task<bool> isRegistered() override;

private:
    QString m_bundleIdentifier;
    LoginItem &m_service;
    const UserDefaults &m_defaults;
};

/// For a platform that cannot start programs at login: every change fails with `systemUnavailable`.
class LegacyLaunchAtLoginService : public LaunchAtLoginService
{
public:
    explicit LegacyLaunchAtLoginService(const QString &bundleIdentifier) : m_bundleIdentifier(bundleIdentifier) {}

    [[nodiscard]] QString bundleIdentifier() const { return m_bundleIdentifier; }

    [[nodiscard]] QCoro::Task<> registerApp() override;
    [[nodiscard]] QCoro::Task<> unregister() override;
    [[nodiscard]] QCoro::Task<bool> isRegistered() override;

private:
    QString m_bundleIdentifier;
};

/// Chooses the service for a platform.
struct LaunchAtLoginServiceFactory
{
    /// Always the modern one. Without an identifier it gets the application's.
    [[nodiscard]] static std::unique_ptr<LaunchAtLoginService>
    createService(const Platform &platform, const std::optional<QString> &bundleIdentifier = {});
};

} // namespace quillhaven
