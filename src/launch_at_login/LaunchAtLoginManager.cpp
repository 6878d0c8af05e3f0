// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginManager.h"

#include "launch_at_login/LaunchAtLoginConfiguration.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "support/printLogger.h"

#include <system_error>
#include <utility>

namespace quillhaven {

namespace {

LaunchAtLoginError mappedSystemError(const std::system_error &error)
{
    const QString description = localizedDescription(error);
    const QString serviceManagement = QStringLiteral("Service management error: ") + description;
    switch (error.code().value()) {
    case -1:
    case 1000:
        return LaunchAtLoginError::permissionDenied();
    case -2:
        return LaunchAtLoginError::systemUnavailable();
    case 1001:
        return LaunchAtLoginError::registrationFailed(serviceManagement);
    case 1002:
        return LaunchAtLoginError::unregistrationFailed(serviceManagement);
    default:
        break;
    }
    if (QLatin1String(error.code().category().name()) == QLatin1String("com.apple.ServiceManagement")) {
        return LaunchAtLoginError::registrationFailed(serviceManagement);
    }
    return LaunchAtLoginError::unknownError(description);
}

} // namespace

LaunchAtLoginManager::LaunchAtLoginManager(const Platform &platform, const std::optional<QString> &bundleIdentifier,
                                           std::unique_ptr<LaunchAtLoginService> launchAtLoginService, QObject *parent)
    : QObject(parent),
      m_clock(platform.clock),
      m_bundleIdentifier(bundleIdentifier.value_or(mainBundleIdentifier())),
      m_launchAtLoginService(launchAtLoginService
                                 ? std::move(launchAtLoginService)
                                 : LaunchAtLoginServiceFactory::createService(platform, m_bundleIdentifier))
{
    m_currentState.lastUpdated = m_clock.now();
}

LaunchAtLoginManager::~LaunchAtLoginManager()
{
    printLogger(QStringLiteral("LaunchAtLoginManager: Cleaned up resources"));
}

QCoro::Task<> LaunchAtLoginManager::setLaunchAtLogin(bool enabled)
{
    if (!m_isSystemSupported) {
        throw LaunchAtLoginError::systemUnavailable();
    }
    setLastError(std::nullopt);
    updateState({});
    setIsUpdating(true);
    updateState({.isEnabled = {}, .systemStatus = SystemStatus::updating, .errorState = {}});

    std::exception_ptr failure;
    try {
        if (enabled) {
            co_await m_launchAtLoginService->registerApp();
        } else {
            co_await m_launchAtLoginService->unregister();
        }
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        const LaunchAtLoginError error = mapError(failure);
        handleError(error);
        printLogger(QStringLiteral("LaunchAtLoginManager: Failed to %1 launch at login")
                        .arg(enabled ? QStringLiteral("enable") : QStringLiteral("disable")));
        printLogger(QStringLiteral("Error: ") + error.errorDescription());
        setIsUpdating(false);
        throw error;
    }
    setIsEnabled(enabled);
    updateState({.isEnabled = enabled, .systemStatus = SystemStatus::synchronized, .errorState = {}});
    printLogger(QStringLiteral("LaunchAtLoginManager: Successfully ") +
                (enabled ? QStringLiteral("enabled") : QStringLiteral("disabled")) +
                QStringLiteral(" launch at login"));
    setIsUpdating(false);
}

QCoro::Task<bool> LaunchAtLoginManager::checkCurrentStatus()
{
    if (!m_isSystemSupported) {
        co_return false;
    }
    const bool isRegistered = co_await m_launchAtLoginService->isRegistered();
    const bool hasChanged = m_isEnabled != isRegistered;
    setIsEnabled(isRegistered);
    const SystemStatus status = hasChanged ? SystemStatus::synchronized : m_currentState.systemStatus;
    updateState({.isEnabled = isRegistered, .systemStatus = status, .errorState = {}});
    co_return isRegistered;
}

QCoro::Task<> LaunchAtLoginManager::refreshStatus()
{
    co_await checkCurrentStatus();
}

void LaunchAtLoginManager::clearError()
{
    setLastError(std::nullopt);
}

QCoro::Task<bool> LaunchAtLoginManager::testLaunchAtLogin()
{
    try {
        co_await m_launchAtLoginService->registerApp();
        const bool isRegistered = co_await m_launchAtLoginService->isRegistered();
        co_await m_launchAtLoginService->unregister();
        co_return isRegistered;
    } catch (...) {
        printLogger(QStringLiteral("LaunchAtLoginManager test failed: ") +
                    localizedDescription(std::current_exception()));
    }
    co_return false;
}

void LaunchAtLoginManager::updateState(const StateChange &change)
{
    m_currentState = {.isEnabled = change.isEnabled.value_or(m_currentState.isEnabled),
                      .lastUpdated = m_clock.now(),
                      .systemStatus = change.systemStatus.value_or(m_currentState.systemStatus),
                      .errorState = change.errorState ? change.errorState : m_currentState.errorState};
    Q_EMIT currentStateChanged();
}

void LaunchAtLoginManager::handleError(const LaunchAtLoginError &error)
{
    setLastError(error);
    updateState({.isEnabled = {}, .systemStatus = {}, .errorState = error});
    printLogger(QStringLiteral("LaunchAtLoginManager error: ") + error.errorDescription());
    printLogger(QStringLiteral("Recovery suggestion: ") + error.recoverySuggestion());
}

LaunchAtLoginError LaunchAtLoginManager::mapError(const std::exception_ptr &error)
{
    try {
        std::rethrow_exception(error);
    } catch (const LaunchAtLoginError &known) {
        return known;
    } catch (const std::system_error &ofSystem) {
        return mappedSystemError(ofSystem);
    } catch (...) {
        return LaunchAtLoginError::unknownError(localizedDescription(error));
    }
}

void LaunchAtLoginManager::setIsEnabled(bool value)
{
    if (std::exchange(m_isEnabled, value) != value) {
        Q_EMIT isEnabledChanged();
    }
}

void LaunchAtLoginManager::setIsUpdating(bool value)
{
    if (std::exchange(m_isUpdating, value) != value) {
        Q_EMIT isUpdatingChanged();
    }
}

void LaunchAtLoginManager::setLastError(const std::optional<LaunchAtLoginError> &error)
{
    if (m_lastError != error) {
        m_lastError = error;
        Q_EMIT lastErrorChanged();
    }
}

} // namespace quillhaven
