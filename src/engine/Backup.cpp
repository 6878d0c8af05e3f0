// SPDX-License-Identifier: GPL-3.0-or-later

// Recovery backups go to a folder that a tool of the user's keeps in step with other machines. They are made of the
// private copy, so of locked items only, and none is ever removed here.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/CloudBackups.h"
#include "engine/QuillhavenManager.h"
#include "formats/RecoveryBackup.h"
#include "platform/CloudStorage.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

bool QuillhavenManager::isiCloudAvailable() const
{
    printLogger(QStringLiteral("🌩️ DEBUG: Checking iCloud availability..."));
    printLogger(QStringLiteral("🌩️ DEBUG: Container identifier: ") + cloud_backups::containerIdentifier);
    const std::optional<QString> container = m_platform.cloud.containerDirectory(cloud_backups::containerIdentifier);
    if (container) {
        printLogger(QStringLiteral("🌩️ DEBUG: iCloud container URL found: ") + *container);
        printLogger(QStringLiteral("🌩️ DEBUG: iCloud is available ✅"));
        return true;
    }
    printLogger(QStringLiteral("🌩️ DEBUG: iCloud container URL is nil - iCloud not available"));
    printLogger(QStringLiteral("🌩️ DEBUG: This could mean:"));
    printLogger(QStringLiteral("🌩️ DEBUG: 1. iCloud is not signed in"));
    printLogger(QStringLiteral("🌩️ DEBUG: 2. iCloud Drive is disabled"));
    printLogger(QStringLiteral("🌩️ DEBUG: 3. App doesn't have iCloud entitlements"));
    printLogger(QStringLiteral("🌩️ DEBUG: 4. Container identifier is incorrect"));
    return false;
}

QString QuillhavenManager::getiCloudBackupDirectory() const
{
    const std::optional<QString> container = m_platform.cloud.containerDirectory(cloud_backups::containerIdentifier);
    if (!container) {
        throw QuillhavenError(
            QuillhavenError::accessDenied,
            QStringLiteral("iCloud is not available. Please sign in to iCloud in System Preferences."));
    }
    QString directory = cloud_backups::directoryIn(*container);
    if (!m_platform.fileManager.fileExists(directory)) {
        m_platform.fileManager.createDirectory(directory);
    }
    return directory;
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
    const ProtectedItem *live = m_catalogue.item(itemId);
    if (!live || !m_platform.fileManager.fileExists(live->originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    const ProtectedItem item = *live;
    auto retrieve = [keychain = m_keychain] { return keychain->retrieveMasterPassword(); };
    const QString masterPassword = co_await offMainThread(m_platform.credentialQueue, std::move(retrieve));

    const ItemLease lease = co_await m_catalogue.lease(item.id);
    if (!m_platform.fileManager.fileExists(item.originalBackupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound); // unlocked or removed meanwhile
    }
    const QString backupPath = pathInDirectory(getiCloudBackupDirectory(), item.id + cloud_backups::suffix);
    auto create = [&files = m_platform.fileManager, &random = m_platform.random, directories = m_platform.directories,
                   item, backupPath, masterPassword] {
        createRecoveryBackup(files, random, directories, item.originalBackupPath, backupPath, masterPassword, item);
    };
    co_await offMainThread(std::move(create));
    printLogger(QStringLiteral("✅ iCloud backup created for item: ") + item.originalName);
}

QCoro::Task<> QuillhavenManager::backupAllToiCloud()
{
    requireBackupEnabled();
    const QList<ProtectedItem> items = protectedItems();
    for (const ProtectedItem &item : items) {
        co_await backupToiCloud(item.id);
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
