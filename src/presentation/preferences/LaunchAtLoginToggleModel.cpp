// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/LaunchAtLoginToggleModel.h"

#include "async/Jobs.h"
#include "platform/Platform.h"
#include "support/printLogger.h"

#include <utility>

namespace quillhaven {

LaunchAtLoginToggleModel::LaunchAtLoginToggleModel(LaunchAtLoginServiceManager &serviceManager,
                                                   ConfirmationDialogManager &confirmation, const Platform &platform,
                                                   std::function<void()> restart, QObject *parent)
    : QObject(parent),
      m_serviceManager(serviceManager),
      m_defaults(platform.defaults.standard()),
      m_errorHandler(confirmation, platform.opener, platform.clock, std::move(restart)),
      m_status(serviceManager.manager(), serviceManager.observer(), m_errorHandler, platform.clock),
      m_badge(serviceManager)
{
    connect(&serviceManager, &LaunchAtLoginServiceManager::isEnabledChanged, this, &LaunchAtLoginToggleModel::changed);
    connect(&serviceManager, &LaunchAtLoginServiceManager::isSyncingChanged, this, &LaunchAtLoginToggleModel::changed);
    connect(&serviceManager, &LaunchAtLoginServiceManager::lastErrorChanged, this,
            &LaunchAtLoginToggleModel::observeError);
    settings::startHiddenAtLogin.onChange(m_defaults, this, [this] { Q_EMIT changed(); });
    observeError();
}

QString LaunchAtLoginToggleModel::stateText() const
{
    if (isSyncing()) {
        return QStringLiteral("Updating...");
    }
    return isEnabled() ? QStringLiteral("Enabled") : QStringLiteral("Disabled");
}

void LaunchAtLoginToggleModel::observeError()
{
    if (m_serviceManager.lastError()) {
        m_errorHandler.handleError(*m_serviceManager.lastError());
    } else {
        m_errorHandler.clearError();
    }
}

void LaunchAtLoginToggleModel::setEnabled(bool enabled)
{
    startJobOf(this, [enabled](LaunchAtLoginToggleModel &self) { return self.change(enabled); });
}

QCoro::Task<> LaunchAtLoginToggleModel::change(bool enabled)
{
    m_serviceManager.clearError();
    try {
        co_await m_serviceManager.manager().setLaunchAtLogin(enabled);
    } catch (const LaunchAtLoginError &error) {
        Q_EMIT changeFailed(error.errorDescription()); // the manager has logged it
        co_return;
    }
    m_errorHandler.showSuccessMessage(enabled ? QStringLiteral("Launch at login enabled")
                                              : QStringLiteral("Launch at login disabled"));
}

void LaunchAtLoginToggleModel::setStartsHidden(bool hidden)
{
    settings::startHiddenAtLogin.write(m_defaults, hidden);
    Q_EMIT changed();
}

} // namespace quillhaven
