// SPDX-License-Identifier: GPL-3.0-or-later

// Unlocking puts a locked item back at its place. The item's secret is a gate in front of a move, no key to the data:
//
// 1. the item's own password or the user's finger is checked (a folder has neither);
// 2. the private copy is looked for, and the user confirms the place;
// 3. the placeholder is removed, anything else at the place is kept aside, and the private copy moves there;
// 4. the record is marked unlocked and saved.
//
// Another operation on the item comes first or waits: an unlock that finds the item unlocked meanwhile is done.
//
// A stop within 3 leaves the data in private storage and nothing at the place. A stop before 4 leaves the data at the
// place while the record still says locked.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/KeptAside.h"
#include "engine/OperationScope.h"
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

void markUnlocked(ProtectedItem &item, const QString &place)
{
    item.isMounted = true;
    item.mountedPath = place;
}

enum class UnlockLines { Silent, Printed };

void restorePrivateCopy(FileManager &files, const QString &backupPath, const QString &place, UnlockLines lines)
{
    if (!files.fileExists(backupPath)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    if (files.fileExists(place)) {
        files.removeItem(place);
        if (lines == UnlockLines::Printed) {
            printLogger(QStringLiteral("🗑️ Removed placeholder file"));
        }
    }
    files.moveItem(backupPath, place);
    if (lines == UnlockLines::Printed) {
        printLogger(QStringLiteral("✅ Successfully restored item to: ") + place);
    }
}

} // namespace

QCoro::Task<> QuillhavenManager::unlockItem(ProtectedItem item)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Item, item.id);
    if (operation) {
        co_await performUnlockOperation(item, *operation);
    }
}

QCoro::Task<> QuillhavenManager::performUnlockOperation(ProtectedItem item, OperationScope &operation)
{
    printLogger(QStringLiteral("🔓 Unlocking: ") + item.originalName);
    printLogger(QStringLiteral("📁 Original path: ") + item.originalPath);
    printLogger(QStringLiteral("💾 Backup path: ") + item.originalBackupPath);

    // The two quiet exits below reset the engine's flag and leave the record marked busy.
    if (!co_await authenticateForUnlock(item)) {
        setIsProcessing(false);
        operation.keepMark();
        operation.endSession();
        co_return;
    }
    // An unlock that another one has overtaken finds no private copy any more, and that is no failure.
    if (meanwhile(item, operation.wasListed()) != Meanwhile::Nothing) {
        operation.endSession();
        co_return;
    }
    if (!m_catalogue.isLeased(item.id)) { // Else another operation is moving it: what exists now says nothing.
        requirePrivateCopy(m_platform.fileManager, item.originalBackupPath);
    }
    QString place;
    try {
        place = co_await requestFileAccess(item.originalPath);
    } catch (...) {
        setIsProcessing(false);
        operation.keepMark();
        co_return;
    }
    printLogger(QStringLiteral("📍 DEBUG: File access granted for unlock: ") + place);

    co_await operation.lease();
    if (meanwhile(item, operation.wasListed()) == Meanwhile::Nothing) {
        co_await keepForeignItem(place, item.originalBackupPath);
        auto restore = [&files = m_platform.fileManager, backupPath = item.originalBackupPath, place] {
            restorePrivateCopy(files, backupPath, place, UnlockLines::Printed);
        };
        co_await offMainThread(std::move(restore));
        m_catalogue.update(item.id, [&place](ProtectedItem &live) {
            markUnlocked(live, place);
            live.isProcessing = false;
        });
    }
    operation.endSession();
}

QCoro::Task<> QuillhavenManager::keepForeignItem(QString place, QString privateCopy)
{
    auto keep = [&files = m_platform.fileManager, place, privateCopy] {
        return keepForeignItemAside(files, place, privateCopy);
    };
    const std::optional<QString> aside = co_await offMainThread(std::move(keep));
    if (aside) {
        Q_EMIT keptAside(place, *aside);
    }
}

QCoro::Task<> QuillhavenManager::unlockItemWithAccessibleURL(ProtectedItem item, QString accessiblePath)
{
    printLogger(QStringLiteral("🔓 Unlocking: ") + item.originalName);
    const bool wasListed = isListed(item.id);
    if (!co_await authenticateForUnlock(item)) {
        co_return;
    }
    const ItemLease lease = co_await m_catalogue.lease(item.id);
    if (meanwhile(item, wasListed) != Meanwhile::Nothing) {
        co_return;
    }
    co_await keepForeignItem(accessiblePath, item.originalBackupPath);
    auto restore = [&files = m_platform.fileManager, backupPath = item.originalBackupPath, accessiblePath] {
        restorePrivateCopy(files, backupPath, accessiblePath, UnlockLines::Silent);
    };
    co_await offMainThread(std::move(restore));
    m_catalogue.update(item.id, [&accessiblePath](ProtectedItem &live) { markUnlocked(live, accessiblePath); });
}

} // namespace quillhaven
