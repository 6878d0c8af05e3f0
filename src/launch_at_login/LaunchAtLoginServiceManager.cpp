// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginServiceManager.h"

#include "async/Jobs.h"
#include "platform/Platform.h"
#include "support/printLogger.h"

#include <utility>

namespace quillhaven {

LaunchAtLoginServiceManager::LaunchAtLoginServiceManager(const Platform &platform,
                                                         std::unique_ptr<LaunchAtLoginService> launchAtLoginService,
                                                         QObject *parent)
    : QObject(parent),
      m_defaults(platform.defaults.standard()),
      m_manager(platform, std::nullopt, std::move(launchAtLoginService)),
      m_observer(m_manager, m_defaults, platform.clock)
{
    setupBindings();
    observeHiddenStart();
    startJobOf(this, [](LaunchAtLoginServiceManager &self) { return self.synchronizeAtLaunch(); });
}

LaunchAtLoginServiceManager::~LaunchAtLoginServiceManager()
{
    m_observer.stopObserving();
    printLogger(QStringLiteral("LaunchAtLoginServiceManager: Cleaned up resources"));
}

QCoro::Task<> LaunchAtLoginServiceManager::synchronizeAtLaunch()
{
    co_await m_manager.checkCurrentStatus();
    co_await m_observer.performSynchronization(true);
}

void LaunchAtLoginServiceManager::setupBindings()
{
    const auto mirror = [this](auto *source, auto signal, auto update) {
        connect(source, signal, this, update);
        update();
    };
    mirror(&m_manager, &LaunchAtLoginManager::isEnabledChanged,
           [this] { assign(m_isEnabled, m_manager.isEnabled(), &LaunchAtLoginServiceManager::isEnabledChanged); });
    mirror(&m_manager, &LaunchAtLoginManager::isSystemSupportedChanged, [this] {
        assign(m_isSystemSupported, m_manager.isSystemSupported(),
               &LaunchAtLoginServiceManager::isSystemSupportedChanged);
    });
    mirror(&m_observer, &LaunchAtLoginSettingsObserver::syncStatusChanged,
           [this] { assign(m_syncStatus, m_observer.syncStatus(), &LaunchAtLoginServiceManager::syncStatusChanged); });
    const auto updateIsSyncing = [this] {
        assign(m_isSyncing, m_observer.isSyncing() || m_manager.isUpdating(),
               &LaunchAtLoginServiceManager::isSyncingChanged);
    };
    mirror(&m_observer, &LaunchAtLoginSettingsObserver::isSyncingChanged, updateIsSyncing);
    mirror(&m_manager, &LaunchAtLoginManager::isUpdatingChanged, updateIsSyncing);
    const auto updateLastError = [this] {
        const auto &error = m_observer.lastSyncError() ? m_observer.lastSyncError() : m_manager.lastError();
        assign(m_lastError, error, &LaunchAtLoginServiceManager::lastErrorChanged);
    };
    mirror(&m_observer, &LaunchAtLoginSettingsObserver::lastSyncErrorChanged, updateLastError);
    mirror(&m_manager, &LaunchAtLoginManager::lastErrorChanged, updateLastError);
}

void LaunchAtLoginServiceManager::observeHiddenStart()
{
    settings::startHiddenAtLogin.onChange(m_defaults, this, [this] {
        startJobOf(this, [](LaunchAtLoginServiceManager &self) { return self.registerAgain(); });
    });
}

QCoro::Task<> LaunchAtLoginServiceManager::registerAgain()
{
    const bool isRegistered = co_await m_manager.checkCurrentStatus();
    if (!isRegistered) {
        co_return;
    }
    try {
        co_await setLaunchAtLogin(true);
    } catch (const LaunchAtLoginError &) {
        // The manager has logged it, and `lastError` reports it.
    }
}

QCoro::Task<> LaunchAtLoginServiceManager::setLaunchAtLogin(bool enabled)
{
    clearError();
    co_await m_manager.setLaunchAtLogin(enabled);
}

QCoro::Task<> LaunchAtLoginServiceManager::forceSynchronization()
{
    co_await m_observer.performSynchronization(true);
}

QCoro::Task<> LaunchAtLoginServiceManager::refreshStatus()
{
    co_await m_manager.checkCurrentStatus();
}

void LaunchAtLoginServiceManager::clearError()
{
    m_manager.clearError();
    m_observer.clearSyncError();
}

QCoro::Task<bool> LaunchAtLoginServiceManager::testLaunchAtLogin()
{
    return m_manager.testLaunchAtLogin();
}

} // namespace quillhaven
