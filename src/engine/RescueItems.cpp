// SPDX-License-Identifier: GPL-3.0-or-later

// The rescue finds what an interrupted run has left, and puts it right one item at a time, each only when the user asks
// for it. A lost item goes to a place of the user's choice or into the list again; a record whose data is back at its
// place is marked as unlocked, or its removal is finished. A lost file whose password is in the keyring is given back
// only for that password.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "credentials/KeychainError.h"
#include "engine/ContainerPlace.h"
#include "engine/ItemPlaces.h"
#include "engine/LostItems.h"
#include "engine/OperationScope.h"
#include "engine/OwnPlaces.h"
#include "engine/PlaceholderFile.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <algorithm>

namespace quillhaven {

namespace {

/// Which secret is stored for an item.
enum class Secret { None, Password, TouchIDKey };

template <typename Read>
bool isStored(Read read)
{
    try {
        read();
        return true;
    } catch (const KeychainError &error) {
        if (error.errorCase() == KeychainError::retrieveFailed && error.status() == credentialItemNotFound) {
            return false;
        }
        throw;
    }
}

Secret storedSecret(KeychainManager &keychain, const QString &id)
{
    if (isStored([&] { (void)keychain.retrievePassword(id); })) {
        return Secret::Password;
    }
    return isStored([&] { (void)keychain.retrieveTouchIDKey(id); }) ? Secret::TouchIDKey : Secret::None;
}

/// The record that a lost item would have at this place.
ProtectedItem recordOf(const LostItem &lost, const QString &place, const UserDirectories &directories, Secret secret)
{
    ProtectedItem item;
    item.id = lost.id;
    item.originalName = lastPathComponent(place);
    item.originalPath = place;
    item.originalBackupPath = lost.privatePath;
    item.containerPath =
        lost.containerPath.isEmpty() ? containerPathFor(directories, item.originalName) : lost.containerPath;
    item.isFolder = lost.isFolder;
    item.useTouchID = secret == Secret::TouchIDKey;
    return item;
}

void putBack(FileManager &files, const QString &privatePath, const QString &place)
{
    if (files.fileExists(place)) {
        files.replaceItemAt(place, privatePath); // a placeholder: anything else was kept aside
    } else {
        files.moveItem(privatePath, place);
    }
}

/// Makes sure that a placeholder, and nothing else, is at the place.
void requirePlaceholder(FileManager &files, const QString &place)
{
    if (!files.fileExists(place)) {
        writePlaceholder(files, place);
    } else if (!holdsPlaceholder(files, place)) {
        throw FileError::of(FileError::Kind::TargetExists, FileError::Action::Use, place, place);
    }
}

} // namespace

QCoro::Task<RescueFindings> QuillhavenManager::findLostItems()
{
    if (m_catalogue.problem()) {
        co_return RescueFindings(); // Without the records, every item would look lost.
    }
    FileManager &files = m_platform.fileManager;
    auto look = [&files, directories = m_platform.directories, storage = secureStorageDirectory(),
                 items = protectedItems()] { return quillhaven::findLostItems(files, directories, storage, items); };
    RescueFindings findings = co_await offMainThread(std::move(look));
    // Operations went on meanwhile.
    findings.lostItems.removeIf([this](const LostItem &lost) { return !isLost(lost); });
    const auto isSettled = [this](const QString &id, auto isIn) {
        const ProtectedItem *item = m_catalogue.item(id);
        return !item || m_catalogue.isLeased(id) || !isIn(m_platform.fileManager, *item);
    };
    findings.returnedItems.removeIf([&](const QString &id) { return isSettled(id, isReturned); });
    findings.interruptedLocks.removeIf([&](const QString &id) { return isSettled(id, isLockUnfinished); });
    co_return findings;
}

bool QuillhavenManager::isLost(const LostItem &lost) const
{
    const auto isItsCopy = [&lost](const ProtectedItem &item) { return item.originalBackupPath == lost.privatePath; };
    return !m_idsInProtection.contains(lost.id) && !std::ranges::any_of(protectedItems(), isItsCopy) &&
           m_platform.fileManager.fileExists(lost.privatePath);
}

void QuillhavenManager::requireLost(const LostItem &lost) const
{
    requireKeptRecords();
    if (!isLost(lost)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
}

void QuillhavenManager::requireNoPlaceOfAnItem(const QString &place) const
{
    const FileManager &files = m_platform.fileManager;
    if (m_catalogue.itemAt(place) || isPlaceOfAnItem(files, protectedItems(), place)) {
        throw QuillhavenError(QuillhavenError::accessDenied,
                              QStringLiteral("\"%1\" is the place of another item of the list. Please choose another "
                                             "folder.")
                                  .arg(displayName(lastPathComponent(place))));
    }
    if (reasonNotToProtect(files, placesOfProgram(), protectedItems(), place)) {
        throw QuillhavenError(QuillhavenError::accessDenied,
                              QStringLiteral("\"%1\" belongs to Quillhaven itself. Please choose another folder.")
                                  .arg(displayName(lastPathComponent(parentDirectory(place)))));
    }
}

QCoro::Task<bool> QuillhavenManager::giveBackLostItem(LostItem lost, QString place)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Engine);
    if (!operation) {
        co_return false;
    }
    requireLost(lost);
    requireNoPlaceOfAnItem(place);
    if (!lost.isFolder) {
        auto read = [keychain = m_keychain, id = lost.id] { return storedSecret(*keychain, id); };
        const Secret secret = co_await offMainThread(m_platform.credentialQueue, std::move(read));
        const ProtectedItem item = recordOf(lost, place, m_platform.directories, secret);
        if (secret != Secret::None && !co_await authenticateForUnlock(item)) {
            co_return false;
        }
    }
    const ItemLease lease = co_await m_catalogue.leasePlace(lost.privatePath, place);
    requireLost(lost);
    co_await keepForeignItem(place, lost.privatePath);
    auto move = [&files = m_platform.fileManager, lost, place] {
        files.discardAbandonedItems(parentDirectory(place)); // What the interrupted run has left of it.
        putBack(files, lost.privatePath, place);
    };
    co_await offMainThread(std::move(move));
    printLogger(QStringLiteral("🛟 Gave back a lost item: ") + place);
    if (!lost.isFolder && !isListed(lost.id)) {
        auto forget = [keychain = m_keychain, id = lost.id] { keychain->removeCredentials(id); };
        try {
            co_await offMainThread(m_platform.credentialQueue, std::move(forget));
        } catch (const LocalizedError &error) {
            printLogger(error.errorDescription()); // The item is back all the same.
        }
    }
    operation->endSession();
    co_return true;
}

QCoro::Task<bool> QuillhavenManager::listLostItem(LostItem lost, QString place)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Engine);
    if (!operation) {
        co_return false;
    }
    Secret secret = Secret::None;
    if (!lost.isFolder) {
        auto read = [keychain = m_keychain, id = lost.id] { return storedSecret(*keychain, id); };
        secret = co_await offMainThread(m_platform.credentialQueue, std::move(read));
        if (secret == Secret::None || isListed(lost.id)) {
            throw QuillhavenError(QuillhavenError::accessDenied,
                                  QStringLiteral("No password is stored for \"%1\". Give it back instead, and protect "
                                                 "it again.")
                                      .arg(displayName(lastPathComponent(place))));
        }
    }
    const ItemLease lease = co_await m_catalogue.leasePlace(lost.privatePath, place);
    requireLost(lost);
    ProtectedItem item = recordOf(lost, place, m_platform.directories, secret);
    if (isListed(item.id)) {
        item.id = m_platform.random.uuidString();
    }
    requireNoPlaceOfAnItem(place);
    auto write = [&files = m_platform.fileManager, place] { requirePlaceholder(files, place); };
    co_await offMainThread(std::move(write));
    m_catalogue.append(item);
    printLogger(QStringLiteral("🛟 Took a lost item into the list: ") + place);
    operation->endSession();
    co_return true;
}

QCoro::Task<bool> QuillhavenManager::settleReturnedItem(QString id, Returned wanted)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Item, id);
    if (!operation) {
        co_return false;
    }
    co_await operation->lease();
    const ProtectedItem *live = m_catalogue.item(id);
    if (!live || !isReturned(m_platform.fileManager, *live)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    if (wanted == Returned::Unlocked) {
        m_catalogue.update(id, [](ProtectedItem &item) {
            item.isMounted = true;
            item.mountedPath = item.originalPath;
            item.isProcessing = false;
        });
    } else {
        const ProtectedItem item = *live;
        co_await cleanUpProtection(item, RemovalLog(RemovalLog::Lines::Silent));
        removeFromProtectedItems(id);
        saveProtectedItems();
    }
    operation->endSession();
    co_return true;
}

} // namespace quillhaven
