// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/UpdateBadgeModel.h"

#include "presentation/dialogs/OpenDownload.h"
#include "updates/UpdateManager.h"

namespace quillhaven {

UpdateBadgeModel::UpdateBadgeModel(UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors,
                                   QObject *parent)
    : QObject(parent), m_updateManager(updateManager), m_opener(opener), m_errors(errors)
{
    connect(&updateManager, &UpdateManager::availableUpdateChanged, this, &UpdateBadgeModel::changed);
}

bool UpdateBadgeModel::hasUpdateAvailable() const
{
    return m_updateManager.hasUpdateAvailable();
}

void UpdateBadgeModel::download()
{
    openDownload(m_updateManager, m_opener, m_errors);
}

} // namespace quillhaven
