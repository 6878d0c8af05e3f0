// SPDX-License-Identifier: GPL-3.0-or-later

// Locking moves an unlocked item's data back into private storage:
//
// 1. the data at the target, if any, is removed or gets another name, and the original moves there;
// 2. the placeholder is written;
// 3. the record is marked locked and saved.
//
// Another operation on the item comes first or waits: a lock that finds the item locked meanwhile is done.
//
// A stop after 1 leaves the data in private storage while the record still says unlocked: the next lock finds no
// original, skips the move and writes the placeholder; an unlock finds the private copy. A stop after 2 leaves
// the placeholder as well, which the next lock does not take for the original. A missing original is locked all the
// same, without any data.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/OperationScope.h"
#include "engine/PlaceholderFile.h"
#include "engine/PrivateCopies.h"
#include "engine/QuillhavenManager.h"
#include "platform/Clock.h"
#include "platform/FileManager.h"
#include "support/Paths.h"
#include "support/printLogger.h"

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto lockTimeout = 30s;

QString kindOf(const ProtectedItem &item)
{
    return item.isFolder ? QStringLiteral("folder") : QStringLiteral("file");
}

QString secondsText(std::chrono::nanoseconds elapsed)
{
    return QString::number(std::chrono::duration<double>(elapsed).count(), 'f', 2) + QLatin1Char('s');
}

enum class LockLines { Silent, Printed };

struct LockWork
{
    FileManager &files;
    const Clock &clock;
    QString secureStorage;
    ProtectedItem item;
    LockLines lines;

    [[nodiscard]] bool isLogged() const { return lines == LockLines::Printed; }
};

void markLocked(ProtectedItem &item)
{
    item.isMounted = false;
    item.mountedPath.reset();
}

void moveOriginal(const LockWork &work, const QString &target)
{
    const QString kind = kindOf(work.item);
    printLogger(QStringLiteral("🔄 Starting move operation for ") + kind + QStringLiteral(": ") +
                work.item.originalName);
    const auto start = work.clock.uptime();
    try {
        work.files.moveItem(work.item.originalPath, target);
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("❌ Error moving ") + kind + QStringLiteral(": ") + error.errorDescription());
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("Could not move ") + kind +
                                                                 QStringLiteral(" to secure storage: ") +
                                                                 error.errorDescription());
    }
    printLogger(QStringLiteral("✅ Successfully moved ") + kind + QStringLiteral(" to secure storage in ") +
                secondsText(work.clock.uptime() - start));
}

/// A lock that was interrupted has left its data at the target, and something new is at the original place. Only a
/// duplicate of that is removed; other data stays in private storage under another name.
void clearTarget(FileManager &files, const QString &original, const QString &target)
{
    if (files.contentsEqual(original, target)) {
        files.removeItem(target);
    } else {
        files.renameItem(target, freePrivatePath(files, target));
    }
}

void moveIntoStorage(const LockWork &work)
{
    const ProtectedItem &item = work.item;
    if (!work.files.fileExists(work.secureStorage)) {
        work.files.createDirectory(work.secureStorage);
    }
    const QString target = pathInDirectory(work.secureStorage, lastPathComponent(item.originalBackupPath));
    // Taking a placeholder for the item would destroy the data in the private copy.
    if (work.files.fileExists(item.originalPath) && !isLockInterrupted(work.files, item.originalPath, target)) {
        if (work.isLogged()) {
            printLogger(QStringLiteral("Locking item: ") + item.originalName + QStringLiteral(", isFolder: ") +
                        printed(item.isFolder));
            printLogger(QStringLiteral("Original path exists: ") + item.originalPath);
            printLogger(QStringLiteral("Target backup path: ") + target);
        }
        if (work.files.fileExists(target)) {
            clearTarget(work.files, item.originalPath, target);
            if (work.isLogged()) {
                printLogger(QStringLiteral("Removed existing backup"));
            }
        }
        if (work.isLogged()) {
            moveOriginal(work, target);
        } else {
            work.files.moveItem(item.originalPath, target);
        }
    }
    writePlaceholder(work.files, item.originalPath);
}

} // namespace

QCoro::Task<> QuillhavenManager::lockItem(ProtectedItem item)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Item, item.id);
    if (!operation) {
        co_return;
    }
    co_await lockWithinLimit(std::move(item), *operation);
}

QCoro::Task<> QuillhavenManager::lockItemUnattended(ProtectedItem item)
{
    const auto operation = OperationScope::beginUnattended(*this, OperationScope::Mark::Item, item.id);
    co_await lockWithinLimit(std::move(item), *operation);
}

QCoro::Task<> QuillhavenManager::lockWithinLimit(ProtectedItem item, OperationScope &operation)
{
    co_await operation.lease();
    if (meanwhile(item, operation.wasListed()) != Meanwhile::Nothing) {
        operation.endSession();
        co_return;
    }

    // The timer bounds what is reported, not how long the caller waits: file work cannot be broken off.
    bool hasTimedOut = false;
    auto timer = m_platform.clock.startOneShot(lockTimeout, [&hasTimedOut] { hasTimedOut = true; });
    std::exception_ptr failure;
    try {
        co_await performLockOperation(item);
    } catch (...) {
        failure = std::current_exception();
    }
    timer.reset();
    if (hasTimedOut) {
        failure = std::make_exception_ptr(QuillhavenError(QuillhavenError::operationTimeout,
                                                          QStringLiteral("Lock operation timed out after 30 seconds")));
    }
    if (failure) {
        printLogger(QStringLiteral("❌ Error in lockItem (timeout or other), setting isProcessing = false for item"));
        std::rethrow_exception(failure);
    }
}

QCoro::Task<> QuillhavenManager::performLockOperation(ProtectedItem item)
{
    LockWork work{m_platform.fileManager, m_platform.clock, secureStorageDirectory(), item, LockLines::Printed};
    auto move = [work = std::move(work)] { moveIntoStorage(work); };
    try {
        co_await offMainThread(std::move(move));
    } catch (...) {
        printLogger(QStringLiteral("❌ Error in lock operation, setting isProcessing = false for item"));
        setItemIsProcessing(item.id, false);
        throw;
    }

    printLogger(QStringLiteral("🔄 Updating UI state for ") + kindOf(item) + QStringLiteral(": ") + item.originalName);
    const bool isFound = m_catalogue.update(item.id, [](ProtectedItem &live) {
        markLocked(live);
        live.isProcessing = false;
    });
    if (isFound) {
        printLogger(QStringLiteral("✅ Updated protected items list"));
    }
    printLogger(QStringLiteral("✅ Set isProcessing = false for item"));
    m_masterPasswordManager.endSession();
}

QCoro::Task<> QuillhavenManager::lockItemWithoutFileAccess(ProtectedItem item)
{
    const bool wasListed = isListed(item.id);
    const ItemLease lease = co_await m_catalogue.lease(item.id);
    if (meanwhile(item, wasListed) != Meanwhile::Nothing) {
        co_return;
    }
    LockWork work{m_platform.fileManager, m_platform.clock, secureStorageDirectory(), item, LockLines::Silent};
    auto move = [work = std::move(work)] { moveIntoStorage(work); };
    co_await offMainThread(std::move(move));
    m_catalogue.update(item.id, markLocked);
}

} // namespace quillhaven
