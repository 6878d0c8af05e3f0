// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/OpenDownload.h"

#include "platform/UrlOpener.h"
#include "presentation/dialogs/OperationErrors.h"
#include "support/DisplayName.h"
#include "updates/UpdateManager.h"

namespace quillhaven {

void openDownload(const UpdateManager &updateManager, UrlOpener &opener, OperationErrors &errors)
{
    const std::optional<UpdateInfo> &update = updateManager.availableUpdate();
    if (!update) {
        return;
    }
    const std::optional<QUrl> address = webAddress(*update);
    if (!address) {
        errors.showError(QStringLiteral("The download address is not an address on the web: ") +
                         displayName(update->downloadURL));
    } else if (!opener.open(*address)) {
        errors.showError(QStringLiteral("No browser could be started. The download is at ") +
                         displayName(update->downloadURL));
    }
}

} // namespace quillhaven
