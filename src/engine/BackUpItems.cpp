// SPDX-License-Identifier: GPL-3.0-or-later

// Recovery backups are made of the private copy, so of locked items only, and none is ever removed here.

#include "async/OffMainThread.h"
#include "async/StopForEnd.h"
#include "catalogue/QuillhavenError.h"
#include "engine/QuillhavenManager.h"
#include "formats/RecoveryBackup.h"
#include "platform/FileManager.h"
#include "support/printLogger.h"

namespace quillhaven {

bool QuillhavenManager::isiCloudAvailable() const
{
    return m_cloudBackups.isiCloudAvailable();
}

std::optional<QString> QuillhavenManager::iCloudFolder() const
{
    const std::optional<QString> container = m_cloudBackups.containerDirectory();
    return container ? std::optional(m_platform.fileManager.resolvedPath(*container)) : std::nullopt;
}

std::optional<QString> QuillhavenManager::iCloudProblem() const
{
    const std::optional<QString> folder = iCloudFolder();
    if (!folder || m_platform.fileManager.isWritableFile(*folder)) {
        return std::nullopt;
    }
    return reasonNotToKeepBackups(m_platform.fileManager, placesOfProgram(), *folder);
}

void QuillhavenManager::useiCloudFolder(const QString &folder)
{
    if (const auto reason = reasonNotToKeepBackups(m_platform.fileManager, placesOfProgram(), folder)) {
        throw QuillhavenError(QuillhavenError::accessDenied, *reason);
    }
    m_cloudBackups.useContainerDirectory(folder);
}

void QuillhavenManager::requireBackupEnabled() const
{
    if (!enableiCloudBackup()) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("iCloud backup is not enabled"));
    }
}

QCoro::Task<> QuillhavenManager::backupToiCloud(QString itemId)
{
    requireBackupEnabled();
    const FileManager &files = m_platform.fileManager;
    const ProtectedItem *live = m_catalogue.item(itemId);
    if (!live || !files.fileExists(live->originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    const ProtectedItem item = *live;
    auto retrieve = [keychain = m_keychain] { return keychain->retrieveMasterPassword(); };
    const QString masterPassword = co_await offMainThread(m_platform.credentialQueue, std::move(retrieve));

    const ItemLease lease = co_await m_catalogue.lease(item.id);
    if (!files.fileExists(item.originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound); // unlocked or removed meanwhile
    }
    const QString backupPath = m_cloudBackups.backupPath(item.id);
    auto create = [&platform = m_platform, item, backupPath, masterPassword] {
        createRecoveryBackup(platform.fileManager, platform.random, platform.directories, item.originalBackupPath,
                             backupPath, masterPassword, item);
    };
    co_await offMainThread(std::move(create));
    printLogger(QStringLiteral("✅ iCloud backup created for item: ") + item.originalName);
}

QCoro::Task<> QuillhavenManager::backupAllToiCloud()
{
    requireBackupEnabled();
    const QList<ProtectedItem> items = protectedItems();
    for (qsizetype index = 0; index < items.size(); ++index) {
        if (stopsForEnd(index, items.size())) {
            co_return;
        }
        co_await backupToiCloud(items.at(index).id);
    }
    printLogger(QStringLiteral("✅ All items backed up to iCloud"));
}

QCoro::Task<> QuillhavenManager::backupNewItem(QString itemId)
{
    if (!enableiCloudBackup() || !isiCloudAvailable()) {
        co_return;
    }
    try {
        co_await backupToiCloud(itemId);
    } catch (...) {
        printLogger(QStringLiteral("⚠️ Failed to backup to iCloud: ") + localizedDescription(std::current_exception()));
    }
}

} // namespace quillhaven
