// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/UpdateBadgeModel.h"

#include "platform/UrlOpener.h"
#include "presentation/dashboard/DashboardErrors.h"
#include "support/DisplayName.h"
#include "updates/UpdateManager.h"

namespace quillhaven {

UpdateBadgeModel::UpdateBadgeModel(UpdateManager &updateManager, UrlOpener &opener, DashboardErrors &errors,
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
    const std::optional<UpdateInfo> update = m_updateManager.availableUpdate();
    if (!update) {
        return;
    }
    const std::optional<QUrl> address = webAddress(*update);
    if (!address) {
        m_errors.showError(QStringLiteral("The download address is not an address on the web: ") +
                           displayName(update->downloadURL));
    } else if (!m_opener.open(*address)) {
        m_errors.showError(QStringLiteral("No browser could be started. The download is at ") +
                           displayName(update->downloadURL));
    }
}

} // namespace quillhaven
