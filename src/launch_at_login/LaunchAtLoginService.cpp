// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginService.h"

#include "launch_at_login/LaunchAtLoginConfiguration.h"
#include "platform/LoginItem.h"
#include "platform/Platform.h"
#include "settings/Settings.h"

namespace quillhaven {

ModernLaunchAtLoginService::ModernLaunchAtLoginService(const QString &bundleIdentifier, LoginItem &service,
                                                       const UserDefaults &defaults)
    : m_bundleIdentifier(bundleIdentifier), m_service(service), m_defaults(defaults)
{
}

QCoro::Task<> ModernLaunchAtLoginService::registerApp()
{
    const bool isHidden = settings::startHiddenAtLogin.read(m_defaults);
    const QStringList arguments = isHidden ? LaunchAtLoginConfiguration::current().launchArguments : QStringList();
    try {
        co_await m_service.registerItem(arguments);
    } catch (...) {
        throw LaunchAtLoginError::registrationFailed(localizedDescription(std::current_exception()));
    }
}

QCoro::Task<> ModernLaunchAtLoginService::unregister()
{
    try {
        co_await m_service.unregisterItem();
    } catch (...) {
        throw LaunchAtLoginError::unregistrationFailed(localizedDescription(std::current_exception()));
    }
}

QCoro::Task<bool> ModernLaunchAtLoginService::isRegistered()
{
    const LoginItem::Status status = co_await m_service.status();
    co_return status == LoginItem::Status::Enabled;
}

QCoro::Task<> LegacyLaunchAtLoginService::registerApp()
{
    throw LaunchAtLoginError::systemUnavailable();
    co_return;
}

QCoro::Task<> LegacyLaunchAtLoginService::unregister()
{
    throw LaunchAtLoginError::systemUnavailable();
    co_return;
}

QCoro::Task<bool> LegacyLaunchAtLoginService::isRegistered()
{
    co_return false;
}

std::unique_ptr<LaunchAtLoginService>
LaunchAtLoginServiceFactory::createService(const Platform &platform, const std::optional<QString> &bundleIdentifier)
{
    return std::make_unique<ModernLaunchAtLoginService>(bundleIdentifier.value_or(mainBundleIdentifier()),
                                                        platform.loginItem, platform.defaults.standard());
}

} // namespace quillhaven
