// SPDX-License-Identifier: GPL-3.0-or-later

// Unlocking puts a locked item back where it stood. The item's secret is a gate in front of a move, no key to the data:
//
// 1. the item's own password or the user's finger is checked (a folder has neither);
// 2. the private copy is looked for, and the user confirms the place;
// 3. the placeholder is removed, and the private copy moves to its place;
// 4. the record is marked unlocked and saved.
//
// A stop within 3 leaves the data in private storage and nothing at the place. A stop before 4 leaves the data at the
// place while the record still says locked.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/PrivateCopyLog.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

void requirePrivateCopy(const FileManager &files, const QString &backupPath)
{
    logPrivateCopySearch(files, backupPath);
    const bool exists = files.fileExists(backupPath);
    printLogger(QStringLiteral("📍 DEBUG: Backup file exists: ") + printed(exists));
    if (!exists) {
        logPrivateCopyIsMissing(files, backupPath);
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
}

void restorePrivateCopy(FileManager &files, const QString &backupPath, const QString &place, bool isLogged)
{
    // Looked for again before anything goes: another unlock may have brought the data to its place meanwhile.
    if (!files.fileExists(backupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    if (files.fileExists(place)) {
        files.removeItem(place);
        if (isLogged) {
            printLogger(QStringLiteral("🗑️ Removed placeholder file"));
        }
    }
    files.moveItem(backupPath, place);
    if (isLogged) {
        printLogger(QStringLiteral("✅ Successfully restored item to: ") + place);
    }
}

} // namespace

QCoro::Task<> QuillhavenManager::unlockItem(ProtectedItem item)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    setItemIsProcessing(item.id, true);
    try {
        co_await performUnlockOperation(item);
    } catch (...) {
        setItemIsProcessing(item.id, false);
        throw;
    }
}

QCoro::Task<> QuillhavenManager::performUnlockOperation(ProtectedItem item)
{
    printLogger(QStringLiteral("🔓 Unlocking: ") + item.originalName);
    printLogger(QStringLiteral("📁 Original path: ") + item.originalPath);
    printLogger(QStringLiteral("💾 Backup path: ") + item.originalBackupPath);

    // The two quiet exits below reset the engine's flag and leave the record marked busy.
    if (!co_await authenticateForUnlock(item)) {
        setIsProcessing(false);
        m_masterPasswordManager.endSession();
        co_return;
    }
    requirePrivateCopy(m_platform.fileManager, item.originalBackupPath);
    QString place;
    try {
        place = co_await requestFileAccess(item.originalPath);
    } catch (...) {
        setIsProcessing(false);
        co_return;
    }
    printLogger(QStringLiteral("📍 DEBUG: File access granted for unlock: ") + place);

    auto restore = [&files = m_platform.fileManager, backupPath = item.originalBackupPath, place] {
        restorePrivateCopy(files, backupPath, place, true);
    };
    co_await offMainThread(std::move(restore));

    if (ProtectedItem *live = liveItem(item.id)) {
        live->isMounted = true;
        live->mountedPath = place;
        live->isProcessing = false;
        publishItems();
        saveProtectedItems();
    }
    m_masterPasswordManager.endSession();
}

QCoro::Task<> QuillhavenManager::unlockItemWithAccessibleURL(ProtectedItem item, QString accessiblePath)
{
    printLogger(QStringLiteral("🔓 Unlocking: ") + item.originalName);
    if (!co_await authenticateForUnlock(item)) {
        co_return;
    }
    auto restore = [&files = m_platform.fileManager, backupPath = item.originalBackupPath, accessiblePath] {
        restorePrivateCopy(files, backupPath, accessiblePath, false);
    };
    co_await offMainThread(std::move(restore));

    if (ProtectedItem *live = liveItem(item.id)) {
        live->isMounted = true;
        live->mountedPath = accessiblePath;
        publishItems();
        saveProtectedItems();
    }
}

} // namespace quillhaven
