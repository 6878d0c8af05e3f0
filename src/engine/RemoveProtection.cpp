// SPDX-License-Identifier: GPL-3.0-or-later

// Removing protection gives an item back and forgets it:
//
// 1. a locked item's private copy takes the place of the placeholder, which the user has confirmed; anything else there
//    is kept aside. An unlocked item stays as it is;
// 2. the container and the credentials are removed, as far as that works;
// 3. the record leaves the catalogue, and the catalogue is saved.
//
// A stop after 1 leaves the data at its place and a record that still says locked.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/ContainerPlace.h"
#include "engine/OperationScope.h"
#include "engine/PlaceholderFile.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

const QString inUseText =
    QStringLiteral("Could not restore file to original location. The existing file may be in use by another "
                   "application. Please close any applications using this file and try again.");

bool isInPlace(const FileManager &files, const ProtectedItem &item, const QString &place)
{
    return files.fileExists(place) && !isLockInterrupted(files, place, item.originalBackupPath);
}

void replacePlaceholder(FileManager &files, const QString &privateCopy, const QString &place, RemovalLog log)
{
    log.replacesPlaceholder();
    try {
        files.replaceItemAt(place, privateCopy);
    } catch (const LocalizedError &error) {
        log.replaceFailed(error.errorDescription());
        throw QuillhavenError(QuillhavenError::accessDenied, inUseText);
    }
    log.replaced(place);
}

void restore(FileManager &files, const QString &privateCopy, const QString &place, RemovalLog log)
{
    log.restores(place);
    if (files.fileExists(place)) {
        replacePlaceholder(files, privateCopy, place, log);
        return;
    }
    files.moveItem(privateCopy, place);
    log.moved(place);
}

/// The same for a bulk run, which passes every error on as it is.
void restoreSilently(FileManager &files, const QString &privateCopy, const QString &place)
{
    if (!files.fileExists(privateCopy)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    if (files.fileExists(place)) {
        files.replaceItemAt(place, privateCopy);
    } else {
        files.moveItem(privateCopy, place);
    }
}

void removeContainer(FileManager &files, const QString &containerPath, RemovalLog log)
{
    if (!files.fileExists(containerPath)) {
        return;
    }
    if (!isContainer(files, containerPath)) {
        printLogger(QStringLiteral("📦 This is no container, and stays: ") + containerPath);
        return;
    }
    log.removesContainer();
    try {
        files.removeItem(containerPath);
    } catch (const LocalizedError &error) {
        log.containerNotRemoved(error.errorDescription());
    }
}

} // namespace

QCoro::Task<> QuillhavenManager::removeProtection(ProtectedItem item)
{
    const RemovalLog log(RemovalLog::Lines::Printed);
    log.requested(item);
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Engine, item.id);
    if (!operation) {
        log.guardCancelled();
        co_return;
    }
    log.guardPassed(item);
    co_await performRemoval(item, *operation);
}

QCoro::Task<> QuillhavenManager::performRemoval(ProtectedItem item, OperationScope &operation)
{
    const RemovalLog log(RemovalLog::Lines::Printed);
    const FileManager &files = m_platform.fileManager;
    QString place;
    const bool exists = item.isMounted && isInPlace(files, item, item.originalPath);
    if (item.isMounted) {
        log.lookedAtOriginalPath(item, exists);
    }
    if (!exists) {
        log.searchesPrivateCopy(files, item);
        try {
            place = co_await requestFileAccess(item.originalPath);
        } catch (...) {
            co_return; // dropped: a declined panel is no error
        }
    }

    co_await operation.lease();
    const Meanwhile change = meanwhile(item, operation.wasListed());
    if (change == Meanwhile::Removed) {
        operation.endSession();
        co_return;
    }
    const bool hasComeOrGone = item.isMounted && isInPlace(files, item, item.originalPath) != exists;
    if (change == Meanwhile::StateChanged || hasComeOrGone) {
        const ProtectedItem *live = m_catalogue.item(item.id);
        const ProtectedItem current = live ? *live : item;
        operation.releaseLease();
        co_await performRemoval(current, operation); // which may have a question of its own
        co_return;
    }

    if (exists) {
        log.foundInPlace();
    } else {
        co_await restoreForRemoval(item, place, log);
    }
    co_await cleanUpProtection(item, log);
    exists ? log.endedInPlace() : log.endedWithRestoration();
    removeFromProtectedItems(item.id);
    saveProtectedItems();
    operation.clearMark();
    operation.endSession();
}

QCoro::Task<> QuillhavenManager::restoreForRemoval(ProtectedItem item, QString place, RemovalLog log)
{
    FileManager &files = m_platform.fileManager;
    const QString privateCopy = item.originalBackupPath;
    std::exception_ptr failure;
    try {
        const bool exists = files.fileExists(privateCopy);
        log.accessGranted(place, exists);
        if (!exists) {
            log.privateCopyIsMissing(files, privateCopy);
            throw QuillhavenError(QuillhavenError::itemNotFound);
        }
        co_await keepForeignItem(place, privateCopy);
        auto work = [&files, privateCopy, place, log] { restore(files, privateCopy, place, log); };
        co_await offMainThread(std::move(work));
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        log.failed(localizedDescription(failure));
        std::rethrow_exception(failure);
    }
}

QCoro::Task<> QuillhavenManager::removeProtectionWithAccessibleURL(ProtectedItem item, QString accessiblePath)
{
    const bool wasListed = isListed(item.id);
    const ItemLease lease = co_await m_catalogue.lease(item.id);
    if (const ProtectedItem *live = m_catalogue.item(item.id)) {
        item.isMounted = live->isMounted;
    } else if (wasListed) {
        co_return; // Another operation has given it back.
    }
    FileManager &files = m_platform.fileManager;
    if (!item.isMounted || !isInPlace(files, item, accessiblePath)) {
        co_await keepForeignItem(accessiblePath, item.originalBackupPath);
        auto work = [&files, privateCopy = item.originalBackupPath, accessiblePath] {
            restoreSilently(files, privateCopy, accessiblePath);
        };
        co_await offMainThread(std::move(work));
    }
    co_await cleanUpProtection(item, RemovalLog(RemovalLog::Lines::Silent));
    removeFromProtectedItems(item.id);
    saveProtectedItems();
}

QCoro::Task<> QuillhavenManager::cleanUpProtection(ProtectedItem item, RemovalLog log)
{
    auto container = [&files = m_platform.fileManager, path = item.containerPath, log] {
        removeContainer(files, path, log);
    };
    co_await offMainThread(std::move(container));

    if (item.isFolder) {
        log.skipsCredentials();
        co_return;
    }
    log.removesCredentials(item.id);
    auto credentials = [keychain = m_keychain, id = item.id] { keychain->removeCredentials(id); };
    try {
        co_await offMainThread(m_platform.credentialQueue, std::move(credentials));
        log.credentialsRemoved();
    } catch (const LocalizedError &error) {
        log.credentialsNotRemoved(error.errorDescription());
    }
}

} // namespace quillhaven
