// SPDX-License-Identifier: GPL-3.0-or-later

// Protecting moves an item into private storage and records it. A file is only moved when the credential store is ready
// to keep its password: it is unlocked first. Nothing is undone on a failure; what exists after each step, also when
// the process dies there:
//
// | After         | Original place | Private storage | Documents | Credential | Catalogue     |
// |---------------|----------------|-----------------|-----------|------------|---------------|
// | the move      | empty          | real data       | nothing   | none       | no record     |
// | the container | empty          | real data       | container | none       | no record     |
// | placeholder   | placeholder    | real data       | container | none       | no record     |
// | credential    | placeholder    | real data       | container | stored     | no record     |
// | the save      | placeholder    | real data       | container | stored     | record, saved |
//
// Until the save, the data is known only by its name in private storage: no record points to it.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/ContainerPlace.h"
#include "engine/ItemPlaces.h"
#include "engine/OperationScope.h"
#include "engine/OwnPlaces.h"
#include "engine/PlaceholderFile.h"
#include "engine/PrivateCopies.h"
#include "engine/QuillhavenManager.h"
#include "formats/SecuredContainer.h"
#include "platform/FileManager.h"
#include "support/DisplayName.h"
#include "support/Paths.h"
#include "support/printLogger.h"

#include <QScopeGuard>

namespace quillhaven {

namespace {

/// Everything the file work needs, by value or by reference to what outlives it.
struct ProtectionWork
{
    FileManager &files;
    RandomSource &random;
    UserDirectories directories;
    QString secureStorage;
    QString itemId;
    QString path;
    QString password;
    QList<ProtectedItem> knownItems;
    OwnPlaces ownPlaces;
};

const QString documentsText = QStringLiteral("Cannot write to Documents folder. Please check app permissions.");
const QString alreadyProtectedText = QStringLiteral("Item is already protected");

/// For a question: what cannot be read is not known to be a placeholder, and protecting it reports why.
bool isPlaceholder(const FileManager &files, const QString &path)
{
    try {
        return holdsPlaceholder(files, path);
    } catch (const FileError &) {
        return false; // dropped
    }
}

FileError protectionError(const FileError &error, const QString &path)
{
    if (error.kind() == FileError::Kind::OnlyALink) {
        return {
            error.kind(),
            QStringLiteral("Could not protect \"%1\" because it is only a link. Protect the item it leads to instead.")
                .arg(displayName(lastPathComponent(path)))};
    }
    return error.withVerb(QStringLiteral("protect"));
}

void requireReadableAndMovable(const FileManager &files, const QString &path)
{
    constexpr size_t headroom = size_t{1024} * 1024; // more than the container's header and tag
    try {
        files.requireReadableAndMovable(path, headroom);
        if (!path.isValidUtf16()) { // A catalogue with such a record could not be saved any more.
            throw FileError::of(FileError::Kind::InvalidName, FileError::Action::Use, path);
        }
    } catch (const FileError &error) {
        throw protectionError(error, path);
    }
}

void writeContainer(const ProtectionWork &work, const ProtectedItem &item)
{
    if (item.isFolder) {
        const QByteArray marker = secured_container::folderMarker(item.originalBackupPath);
        const auto bytes = std::as_bytes(std::span(marker.constData(), static_cast<size_t>(marker.size())));
        work.files.writeFile(item.containerPath, bytes);
        return;
    }
    createEncryptedContainer(work.files, work.random, work.directories, item.originalBackupPath, item.containerPath,
                             work.password, item.id);
}

/// Asked before anything moves: what fails later would remain in private storage without a record.
void requireProtectable(const ProtectionWork &work)
{
    if (!work.files.fileExists(work.path)) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    // Two records of one place, or a record of a placeholder, destroy the data when both are given back.
    if (isPlaceOfAnItem(work.files, work.knownItems, work.path) || holdsPlaceholder(work.files, work.path)) {
        throw QuillhavenError(QuillhavenError::accessDenied, alreadyProtectedText);
    }
    if (const auto reason = reasonNotToProtect(work.files, work.ownPlaces, work.knownItems, work.path)) {
        throw QuillhavenError(QuillhavenError::accessDenied, *reason);
    }
    if (!work.files.isWritableFile(work.directories.documents)) {
        throw QuillhavenError(QuillhavenError::accessDenied, documentsText);
    }
    requireReadableAndMovable(work.files, work.path);
    if (!work.files.fileExists(work.secureStorage)) {
        work.files.createDirectory(work.secureStorage);
    }
    requirePlaceForContainer(work.files, work.directories, work.secureStorage, work.knownItems, work.path);
}

/// Moves the item and writes its container and placeholder. The new record, not yet in the catalogue.
ProtectedItem moveIntoProtection(const ProtectionWork &work, bool useTouchID)
{
    ProtectedItem item;
    item.id = work.itemId;
    item.originalName = lastPathComponent(work.path);
    item.originalPath = work.path;
    item.useTouchID = useTouchID;
    item.originalBackupPath =
        freePrivatePath(work.files, pathInDirectory(work.secureStorage, item.id + privateCopySuffix));
    work.files.moveItem(work.path, item.originalBackupPath);

    item.containerPath = containerPathFor(work.directories, item.originalName);
    item.isFolder = work.files.isDirectory(item.originalBackupPath);
    writeContainer(work, item);
    writePlaceholder(work.files, work.path);
    return item;
}

} // namespace

QuillhavenManager::CanProtect QuillhavenManager::canProtectItem(QString path) const
{
    const FileManager &files = m_platform.fileManager;
    if (!files.fileExists(path)) {
        return {false, QStringLiteral("File or folder does not exist")};
    }
    const QString name = lastPathComponent(path);
    const QString parent = parentDirectory(path);
    for (const ProtectedItem &item : protectedItems()) {
        if (item.originalName == name && item.originalPath.startsWith(parent)) {
            return {false, alreadyProtectedText};
        }
    }
    if (isPlaceOfAnItem(files, protectedItems(), path) || m_placesInProtection.isClaimed(files, path) ||
        isPlaceholder(files, path)) {
        return {false, alreadyProtectedText};
    }
    if (!files.isWritableFile(m_platform.directories.temporary)) {
        return {false, QStringLiteral("Cannot write to temporary directory. Please check app permissions.")};
    }
    if (!files.isWritableFile(m_platform.directories.documents)) {
        return {false, documentsText};
    }
    if (auto problem = m_catalogue.problem()) {
        return {false, std::move(problem)};
    }
    if (auto reason = reasonNotToProtect(files, placesOfProgram(), protectedItems(), path)) {
        return {false, std::move(reason)};
    }
    try {
        requireReadableAndMovable(files, path);
        requirePlaceForContainer(files, m_platform.directories, secureStorageDirectory(), protectedItems(), path);
    } catch (const FileError &error) {
        return {false, error.errorDescription()};
    }
    return {true, std::nullopt};
}

OwnPlaces QuillhavenManager::placesOfProgram() const
{
    return ownPlaces(m_platform.directories, secureStorageDirectory(), m_cloudBackups.containerDirectory());
}

QStringList QuillhavenManager::protectablePaths(const QStringList &paths) const
{
    QStringList protectable = distinctPlaces(m_platform.fileManager, paths);
    protectable.removeIf([this](const QString &path) { return !canProtectItem(path).canProtect; });
    return protectable;
}

QCoro::Task<> QuillhavenManager::protectItem(QString path, QString password, bool useTouchID)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::Engine);
    if (!operation) {
        co_return;
    }
    if (!m_platform.fileManager.fileExists(path)) {
        // A run that is in progress leaves the place empty for a moment.
        throw m_placesInProtection.isClaimed(m_platform.fileManager, path)
            ? QuillhavenError(QuillhavenError::accessDenied, alreadyProtectedText)
            : QuillhavenError(QuillhavenError::itemNotFound);
    }
    const QString granted = co_await requestFileAccess(path);
    printLogger(QStringLiteral("File access granted for: ") + granted);
    co_await protectItemWithAccessibleURL(granted, password, useTouchID);
    operation->keepMark(); // No view reads it, and the next failure clears it.
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::protectItemWithAccessibleURL(QString path, QString password, bool useTouchID)
{
    requireKeptRecords();
    FileManager &files = m_platform.fileManager;
    const auto claim = m_placesInProtection.claim(files, path);
    if (!claim) {
        throw QuillhavenError(QuillhavenError::accessDenied, alreadyProtectedText);
    }
    if (files.fileExists(path) && !files.isDirectory(path)) {
        co_await prepareToStoreCredentials();
    }
    // A folder above may be moving, or an item below.
    ItemLease lease = co_await m_catalogue.leasePlace(path);
    const QString id = m_platform.random.uuidString();
    ProtectionWork work{.files = files,
                        .random = m_platform.random,
                        .directories = m_platform.directories,
                        .secureStorage = secureStorageDirectory(),
                        .itemId = id,
                        .path = path,
                        .password = password,
                        .knownItems = protectedItems(),
                        .ownPlaces = placesOfProgram()};
    auto check = [work] { requireProtectable(work); };
    co_await offMainThread(std::move(check));
    co_await clearContainerName(containerPathFor(work.directories, lastPathComponent(path)));
    m_idsInProtection.insert(id);
    const auto ended = qScopeGuard([this, id] {
        m_idsInProtection.remove(id);
        if (!isListed(id)) {
            Q_EMIT itemLeftBehind();
        }
    });
    auto move = [work = std::move(work), useTouchID] { return moveIntoProtection(work, useTouchID); };
    const ProtectedItem item = co_await offMainThread(std::move(move));

    if (!item.isFolder) {
        const bool storesTouchIDKey = useTouchID && enableTouchID();
        auto store = [keychain = m_keychain, id = item.id, password, storesTouchIDKey] {
            if (storesTouchIDKey) {
                keychain->storeTouchIDKey(id);
            } else {
                keychain->storePassword(password, id);
            }
        };
        co_await offMainThread(m_platform.credentialQueue, std::move(store));
    }

    m_catalogue.append(item);
    lease.release();
    co_await backupNewItem(item.id);
}

QCoro::Task<> QuillhavenManager::prepareToStoreCredentials()
{
    auto prepare = [keychain = m_keychain] { keychain->prepareForWriting(); };
    co_await offMainThread(m_platform.credentialQueue, std::move(prepare));
}

QCoro::Task<> QuillhavenManager::clearContainerName(QString containerPath)
{
    auto clear = [&files = m_platform.fileManager, items = protectedItems(), containerPath] {
        return keepForeignContainer(files, items, containerPath);
    };
    const std::optional<QString> aside = co_await offMainThread(std::move(clear));
    if (aside) {
        Q_EMIT keptAside(containerPath, *aside);
    }
}

} // namespace quillhaven
