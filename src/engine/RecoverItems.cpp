// SPDX-License-Identifier: GPL-3.0-or-later

// Recovery writes every backup of the cloud folder as a plain file into a folder that the user chooses. It works from
// the backups themselves: the list is only a second source of names. The program does nothing else while it runs.

#include "async/OffMainThread.h"
#include "backup/CloudBackups.h"
#include "backup/RecoverBackup.h"
#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "platform/FilePanels.h"

namespace quillhaven {

QCoro::Task<QStringList> QuillhavenManager::recoverFromiCloud(QString masterPassword)
{
    const QStringList backups = m_cloudBackups.backupPaths();
    auto retrieve = [keychain = m_keychain] { return keychain->retrieveMasterPassword(); };
    const QString stored = co_await offMainThread(m_platform.credentialQueue, std::move(retrieve));
    if (stored != masterPassword) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("Invalid master password"));
    }

    OpenPanelRequest request;
    request.canChooseFiles = false;
    request.canChooseDirectories = true;
    request.canCreateDirectories = true;
    request.title = QStringLiteral("Choose Recovery Location");
    request.message = QStringLiteral("Select a folder where your recovered files will be saved");
    request.prompt = QStringLiteral("Recover Files");
    const std::optional<QString> folder = m_platform.panels.runModal(request);
    if (!folder) {
        throw QuillhavenError(QuillhavenError::authenticationCancelled);
    }
    QStringList recovered;
    for (const QString &backup : backups) {
        const ProtectedItem *item = m_catalogue.item(CloudBackups::itemId(backup));
        const std::optional<QString> listedName = item ? std::optional(item->originalName) : std::nullopt;
        recovered.append(recoverBackup(m_platform.fileManager, backup, *folder, masterPassword, listedName));
    }
    co_return recovered;
}

} // namespace quillhaven
