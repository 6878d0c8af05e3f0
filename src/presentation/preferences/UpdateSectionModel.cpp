// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/UpdateSectionModel.h"

#include "async/Jobs.h"
#include "presentation/dialogs/OpenDownload.h"
#include "updates/UpdateManager.h"

namespace quillhaven {

UpdateSectionModel::UpdateSectionModel(UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors,
                                       QObject *parent)
    : QObject(parent), m_updateManager(updateManager), m_opener(opener), m_errors(errors)
{
    connect(&updateManager, &UpdateManager::isCheckingForUpdatesChanged, this, &UpdateSectionModel::changed);
    connect(&updateManager, &UpdateManager::availableUpdateChanged, this, &UpdateSectionModel::changed);
    connect(&updateManager, &UpdateManager::checkErrorChanged, this, &UpdateSectionModel::changed);
}

QString UpdateSectionModel::versionText() const
{
    return QStringLiteral("Current version: ") + m_updateManager.currentVersion();
}

QString UpdateSectionModel::checkTitle() const
{
    return isChecking() ? QStringLiteral("Checking...") : QStringLiteral("Check for Updates");
}

bool UpdateSectionModel::isChecking() const
{
    return m_updateManager.isCheckingForUpdates();
}

QString UpdateSectionModel::unavailableReason() const
{
    return m_updateManager.unavailableReason();
}

QString UpdateSectionModel::updateText() const
{
    return m_updateManager.hasUpdateAvailable() ? QStringLiteral("• Update available") : QString();
}

QString UpdateSectionModel::errorText() const
{
    const std::optional<QString> &error = m_updateManager.checkError();
    return error ? QStringLiteral("Update check failed: ") + *error : QString();
}

void UpdateSectionModel::check()
{
    startJob([&manager = m_updateManager] { return manager.performUpdateCheck(false); });
}

void UpdateSectionModel::download()
{
    openDownload(m_updateManager, m_opener, m_errors);
}

} // namespace quillhaven
