// SPDX-License-Identifier: GPL-3.0-or-later

// Removing protection gives an item back and forgets it:
//
// 1. a locked item's private copy takes the place of the placeholder, which the user has confirmed; an unlocked item
//    stays as it is;
// 2. the container and the credentials are removed, as far as that works;
// 3. the record leaves the catalogue, and the catalogue is saved.
//
// A stop after 1 leaves the data at its place and a record that still says locked.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/PlaceholderFile.h"
#include "engine/PrivateCopyLog.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/printLogger.h"

namespace quillhaven {

namespace {

const QString inUseText =
    QStringLiteral("Could not restore file to original location. The existing file may be in use by another "
                   "application. Please close any applications using this file and try again.");

void logItem(const ProtectedItem &item)
{
    printLogger(QStringLiteral("🔓 Removing protection from: ") + item.originalName);
    printLogger(QStringLiteral("📁 Original path: ") + item.originalPath);
    printLogger(QStringLiteral("💾 Backup path: ") + item.originalBackupPath);
    printLogger(QStringLiteral("📦 Container path: ") + item.containerPath);
}

bool isAtOriginalPath(const FileManager &files, const ProtectedItem &item)
{
    if (!item.isMounted) {
        return false;
    }
    const bool exists =
        files.fileExists(item.originalPath) && !isLockInterrupted(files, item.originalPath, item.originalBackupPath);
    printLogger(QStringLiteral("📍 DEBUG: Item is mounted - file should be at original location"));
    printLogger(QStringLiteral("📍 DEBUG: Checking if file exists at original path: ") + item.originalPath);
    printLogger(QStringLiteral("📍 DEBUG: File exists at original path: ") + printed(exists));
    return exists;
}

void replacePlaceholder(FileManager &files, const QString &privateCopy, const QString &place)
{
    printLogger(QStringLiteral("⚠️ File already exists at original location, will replace it"));
    try {
        files.replaceItemAt(place, privateCopy);
    } catch (const LocalizedError &error) {
        printLogger(QStringLiteral("❌ Could not replace file: ") + error.errorDescription());
        throw QuillhavenError(QuillhavenError::accessDenied, inUseText);
    }
    printLogger(QStringLiteral("✅ File replaced at original location: ") + place);
    printLogger(QStringLiteral("🗑️ Backup file automatically removed by replaceItem"));
}

void restore(FileManager &files, const QString &privateCopy, const QString &place)
{
    printLogger(QStringLiteral("📁 Restoring file to original location: ") + place);
    if (files.fileExists(place)) {
        replacePlaceholder(files, privateCopy, place);
        return;
    }
    files.moveItem(privateCopy, place);
    printLogger(QStringLiteral("✅ File moved to original location: ") + place);
    printLogger(QStringLiteral("🗑️ Backup file removed by move operation"));
}

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

void logUnless(bool isSilent, const QString &line)
{
    if (!isSilent) {
        printLogger(line);
    }
}

void removeContainer(FileManager &files, const QString &containerPath, bool isSilent)
{
    if (!files.fileExists(containerPath)) {
        return;
    }
    logUnless(isSilent, QStringLiteral("🗑️ Removing container metadata file"));
    try {
        files.removeItem(containerPath);
    } catch (const LocalizedError &error) {
        logUnless(isSilent, QStringLiteral("⚠️ Could not remove container file: ") + error.errorDescription());
    }
}

} // namespace

QCoro::Task<> QuillhavenManager::removeProtection(ProtectedItem item)
{
    printLogger(QStringLiteral("🔓 Starting removeProtection for: ") + item.originalName);
    printLogger(QStringLiteral("📍 DEBUG: Item uses Touch ID: ") + printed(item.useTouchID));
    printLogger(QStringLiteral("📍 DEBUG: Item is folder: ") + printed(item.isFolder));
    printLogger(QStringLiteral("📍 DEBUG: Item is mounted: ") + printed(item.isMounted));
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        printLogger(QStringLiteral("❌ Master password authentication cancelled"));
        co_return;
    }
    printLogger(QStringLiteral("✅ Master password authentication successful"));
    setIsProcessing(true);
    logItem(item);

    if (isAtOriginalPath(m_platform.fileManager, item)) {
        printLogger(QStringLiteral("✅ File is already at original location, removing protection metadata only"));
        co_await cleanUpProtection(item, Logging::On);
        printLogger(QStringLiteral("🎉 Protection successfully removed - file is already at original location!"));
        finishRemoval(item.id);
        co_return;
    }
    printLogger(QStringLiteral("📍 DEBUG: Item is locked or file not at original location, checking backup"));
    logPrivateCopySearch(m_platform.fileManager, item.originalBackupPath);
    QString place;
    try {
        place = co_await requestFileAccess(item.originalPath);
    } catch (...) {
        setIsProcessing(false);
        co_return;
    }
    try {
        co_await restoreForRemoval(item, place);
    } catch (...) {
        printLogger(QStringLiteral("❌ Error removing protection: ") + localizedDescription(std::current_exception()));
        setIsProcessing(false);
        throw;
    }
    co_await cleanUpProtection(item, Logging::On);
    printLogger(QStringLiteral("🎉 Protection successfully removed - file extracted to Desktop!"));
    finishRemoval(item.id);
}

QCoro::Task<> QuillhavenManager::restoreForRemoval(ProtectedItem item, QString place)
{
    FileManager &files = m_platform.fileManager;
    const QString privateCopy = item.originalBackupPath;
    const bool exists = files.fileExists(privateCopy);
    printLogger(QStringLiteral("📍 DEBUG: File access granted for restoration: ") + place);
    printLogger(QStringLiteral("📍 DEBUG: Backup file exists: ") + printed(exists));
    if (!exists) {
        logPrivateCopyIsMissing(files, privateCopy);
        printLogger(QStringLiteral("⚠️ Warning: Backup file not found at ") + privateCopy);
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    auto work = [&files, privateCopy, place] { restore(files, privateCopy, place); };
    co_await offMainThread(std::move(work));
}

QCoro::Task<> QuillhavenManager::removeProtectionWithAccessibleURL(ProtectedItem item, QString accessiblePath)
{
    FileManager &files = m_platform.fileManager;
    const bool isInPlace = item.isMounted && files.fileExists(accessiblePath) &&
                           !isLockInterrupted(files, accessiblePath, item.originalBackupPath);
    if (!isInPlace) {
        auto work = [&files, privateCopy = item.originalBackupPath, accessiblePath] {
            restoreSilently(files, privateCopy, accessiblePath);
        };
        co_await offMainThread(std::move(work));
    }
    co_await cleanUpProtection(item, Logging::Off);
    removeFromProtectedItems(item.id);
    saveProtectedItems();
}

QCoro::Task<> QuillhavenManager::cleanUpProtection(ProtectedItem item, Logging logging)
{
    const bool isSilent = logging == Logging::Off;
    auto container = [&files = m_platform.fileManager, path = item.containerPath, isSilent] {
        removeContainer(files, path, isSilent);
    };
    co_await offMainThread(std::move(container));

    if (item.isFolder) {
        logUnless(isSilent, QStringLiteral("📁 Skipping keychain cleanup for folder"));
        co_return;
    }
    logUnless(isSilent, QStringLiteral("🔑 Removing keychain credentials for item: ") + item.id);
    auto credentials = [keychain = m_keychain, id = item.id] { keychain->removeCredentials(id); };
    try {
        co_await offMainThread(m_platform.credentialQueue, std::move(credentials));
        logUnless(isSilent, QStringLiteral("✅ Successfully removed keychain credentials"));
    } catch (const LocalizedError &error) {
        logUnless(isSilent, QStringLiteral("⚠️ Could not remove keychain credentials: ") + error.errorDescription());
    }
}

void QuillhavenManager::finishRemoval(const QString &id)
{
    removeFromProtectedItems(id);
    saveProtectedItems();
    setIsProcessing(false);
    m_masterPasswordManager.endSession();
}

} // namespace quillhaven
