// SPDX-License-Identifier: GPL-3.0-or-later

#include "launch_at_login/LaunchAtLoginSettingsObserver.h"

#include "async/Jobs.h"
#include "launch_at_login/Debouncer.h"

#include <utility>

namespace quillhaven {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds debounceInterval = 500ms;

} // namespace

LaunchAtLoginSettingsObserver::LaunchAtLoginSettingsObserver(LaunchAtLoginManager &manager, UserDefaults &defaults,
                                                             Clock &clock, QObject *parent)
    : QObject(parent), m_manager(manager), m_defaults(defaults), m_clock(clock)
{
    connect(&manager, &LaunchAtLoginManager::isEnabledChanged, this, [this] { m_hasSystemAnswered = true; });
    startObserving();
}

LaunchAtLoginSettingsObserver::~LaunchAtLoginSettingsObserver() = default;

void LaunchAtLoginSettingsObserver::startObserving()
{
    m_cancellables = std::make_unique<QObject>();
    observeSettingChanges();
    observeManagerChanges();
    setupDebouncedSync();
}

void LaunchAtLoginSettingsObserver::stopObserving()
{
    m_cancellables.reset();
}

void LaunchAtLoginSettingsObserver::observeSettingChanges()
{
    const auto last = std::make_shared<std::optional<bool>>();
    const auto deliver = [this, last] {
        const bool value = settings::startAtLogin.read(m_defaults);
        if (std::exchange(*last, value) != value) {
            startJobOf(this, [value](LaunchAtLoginSettingsObserver &self) { return self.handleSettingChange(value); });
        }
    };
    settings::startAtLogin.onChange(m_defaults, m_cancellables.get(), deliver);
    deliver();
}

void LaunchAtLoginSettingsObserver::observeManagerChanges()
{
    const auto deliverState = [this] {
        const bool value = m_manager.isEnabled();
        startJobOf(this, [value](LaunchAtLoginSettingsObserver &self) { return self.handleManagerStateChange(value); });
    };
    const auto deliverError = [this] {
        if (m_manager.lastError()) {
            setLastSyncError(m_manager.lastError());
        }
    };
    connect(&m_manager, &LaunchAtLoginManager::isEnabledChanged, m_cancellables.get(), deliverState);
    connect(&m_manager, &LaunchAtLoginManager::lastErrorChanged, m_cancellables.get(), deliverError);
    deliverState();
    deliverError();
}

void LaunchAtLoginSettingsObserver::setupDebouncedSync()
{
    // Nothing sends into it at present.
    const auto *subject = new Debouncer(m_clock, debounceInterval, m_cancellables.get());
    connect(subject, &Debouncer::settled, this, [this](bool forced) {
        startJobOf(this, [forced](LaunchAtLoginSettingsObserver &self) { return self.performSynchronization(forced); });
    });
}

void LaunchAtLoginSettingsObserver::startInitialSync()
{
    startJobOf(this, [](LaunchAtLoginSettingsObserver &self) { return self.performSynchronization(false); });
}

QCoro::Task<> LaunchAtLoginSettingsObserver::forceSynchronization()
{
    co_await performSynchronization(true);
}

QCoro::Task<> LaunchAtLoginSettingsObserver::performSynchronization(bool forced)
{
    if (m_isSyncing) {
        co_return;
    }
    setIsSyncing(true);
    const bool setting = settings::startAtLogin.read(m_defaults);
    bool system = false;
    std::exception_ptr failure;
    try {
        system = co_await m_manager.checkCurrentStatus();
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        reportFailure(failure);
        co_return;
    }
    m_lastKnownSettingsState = setting;
    m_lastKnownSystemState = system;
    if (setting == system && !forced) {
        setSyncStatus(SyncStatus::synchronized);
        setIsSyncing(false);
        co_return;
    }
    co_await applyToSystem(setting);
}

QCoro::Task<> LaunchAtLoginSettingsObserver::handleSettingChange(bool newValue)
{
    m_lastKnownSettingsState = newValue;
    if (newValue == m_manager.isEnabled()) {
        co_return;
    }
    setSyncStatus(SyncStatus::outOfSync);
    co_await syncSystemStateToSettings(newValue);
}

QCoro::Task<> LaunchAtLoginSettingsObserver::syncSystemStateToSettings(bool enabled)
{
    if (m_isSyncing) {
        co_return;
    }
    setIsSyncing(true);
    co_await applyToSystem(enabled);
}

QCoro::Task<> LaunchAtLoginSettingsObserver::applyToSystem(bool enabled)
{
    std::exception_ptr failure;
    try {
        co_await m_manager.setLaunchAtLogin(enabled);
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        reportFailure(failure);
        co_return;
    }
    setSyncStatus(SyncStatus::synchronized);
    setLastSyncError(std::nullopt);
    setIsSyncing(false);
}

void LaunchAtLoginSettingsObserver::reportFailure(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const LaunchAtLoginError &error) {
        setLastSyncError(error);
    } catch (...) {
        setLastSyncError(LaunchAtLoginError::unknownError(localizedDescription(failure)));
    }
    setSyncStatus(SyncStatus::error);
    setIsSyncing(false);
}

QCoro::Task<> LaunchAtLoginSettingsObserver::handleManagerStateChange(bool newValue)
{
    m_lastKnownSystemState = newValue;
    if (settings::startAtLogin.read(m_defaults) == newValue) {
        setSyncStatus(SyncStatus::synchronized);
        co_return;
    }
    if (!m_hasSystemAnswered) {
        // The value that the manager began with says nothing about the system, and must not undo the user's wish.
        co_return;
    }
    setSyncStatus(SyncStatus::outOfSync);
    settings::startAtLogin.write(m_defaults, newValue);
    m_lastKnownSettingsState = newValue;
    setSyncStatus(SyncStatus::synchronized);
}

void LaunchAtLoginSettingsObserver::clearSyncError()
{
    setLastSyncError(std::nullopt);
}

void LaunchAtLoginSettingsObserver::setSyncStatus(SyncStatus value)
{
    if (std::exchange(m_syncStatus, value) != value) {
        Q_EMIT syncStatusChanged();
    }
}

void LaunchAtLoginSettingsObserver::setIsSyncing(bool value)
{
    if (std::exchange(m_isSyncing, value) != value) {
        Q_EMIT isSyncingChanged();
    }
}

void LaunchAtLoginSettingsObserver::setLastSyncError(const std::optional<LaunchAtLoginError> &error)
{
    if (m_lastSyncError != error) {
        m_lastSyncError = error;
        Q_EMIT lastSyncErrorChanged();
    }
}

} // namespace quillhaven
