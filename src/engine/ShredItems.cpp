// SPDX-License-Identifier: GPL-3.0-or-later

// Shredding a protected item destroys what is at its original place, in private storage and in its container, then
// forgets its credentials and its record. Each part that does not exist is passed over. A stop leaves what has been
// destroyed destroyed and the item listed; another shred of it finds what is left.

#include "async/OffMainThread.h"
#include "catalogue/QuillhavenError.h"
#include "engine/ContainerPlace.h"
#include "engine/OperationScope.h"
#include "engine/OwnPlaces.h"
#include "engine/QuillhavenManager.h"
#include "platform/FileManager.h"
#include "shredding/ShredEach.h"
#include "support/DisplayName.h"

namespace quillhaven {

namespace {

/// Forwards the statuses, with the progress mapped to a part of the whole.
ProgressCallback mapped(const ProgressCallback &progressCallback, double start, double share)
{
    return [progressCallback, start, share](const QString &status, double progress) {
        progressCallback(status, start + progress * share);
    };
}

} // namespace

QCoro::Task<> QuillhavenManager::shredProtectedItem(ProtectedItem item, ProgressCallback progressCallback)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater, item.id);
    if (!operation) {
        co_return;
    }
    std::exception_ptr failure;
    try {
        co_await destroyItem(item, *operation, progressCallback);
    } catch (...) {
        failure = std::current_exception();
    }
    if (failure) {
        progressCallback(QStringLiteral("Shredding failed: ") + localizedDescription(failure), 0.0);
        std::rethrow_exception(failure);
    }
    removeFromProtectedItems(item.id);
    saveProtectedItems();
    progressCallback(QStringLiteral("Item securely shredded: ") + displayName(item.originalName), 1.0);
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::destroyItem(ProtectedItem item, OperationScope &operation,
                                             ProgressCallback progressCallback)
{
    const FileManager &files = m_platform.fileManager;
    if (!item.isMounted) {
        progressCallback(QStringLiteral("Unlocking item before shredding..."), 0.1);
        // A cancelled prompt counts as unlocked: the item's secret is no gate in front of its destruction.
        co_await unlockItem(item);
        progressCallback(QStringLiteral("Item unlocked, proceeding with shredding..."), 0.2);
    }
    struct Part
    {
        QString path;
        QString status;
        double progress;
        ProgressCallback callback;
    };
    const Part parts[] = {
        {item.originalPath, QStringLiteral("Shredding original file: ") + displayName(item.originalName), 0.3,
         mapped(progressCallback, 0.3, 0.4)},
        {item.originalBackupPath, QStringLiteral("Shredding backup data..."), 0.7, mapped(progressCallback, 0.7, 0.2)},
        {item.containerPath, QStringLiteral("Shredding container file..."), 0.9, [](const QString &, double) {}},
    };
    std::optional<bool> wasMounted; // once the operations before have ended
    for (const Part &part : parts) {
        co_await operation.lease(); // An operation that moves the item is waited for before anything is looked for.
        wasMounted = requireUnchanged(item, operation, wasMounted);
        if (part.path == item.originalPath) {
            co_await keepForeignItem(item.originalPath, item.originalBackupPath);
        }
        if (!files.fileExists(part.path) || (part.path == item.containerPath && !isContainer(files, part.path))) {
            continue;
        }
        progressCallback(part.status, part.progress);
        // A cancelled question passes the part over, as the shredder's own guard does.
        if (co_await operation.leaseInSession()) {
            wasMounted = requireUnchanged(item, operation, wasMounted);
            co_await m_secureShredder.shredItem(part.path, part.callback);
        }
    }
    co_await operation.lease();
    (void)requireUnchanged(item, operation, wasMounted);
    if (!item.isFolder) {
        auto credentials = [keychain = m_keychain, id = item.id] { keychain->removeCredentials(id); };
        co_await offMainThread(m_platform.credentialQueue, std::move(credentials));
    }
}

std::optional<bool> QuillhavenManager::requireUnchanged(const ProtectedItem &item, const OperationScope &operation,
                                                        std::optional<bool> wasMounted) const
{
    // What a removal or an unlock has given back in the middle of the run is not destroyed unseen.
    const ProtectedItem *live = m_catalogue.item(item.id);
    if (live ? wasMounted && *wasMounted != live->isMounted : operation.wasListed()) {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    }
    return live ? std::optional(live->isMounted) : wasMounted;
}

QCoro::Task<> QuillhavenManager::bulkShredProtectedItems(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater);
    if (!operation) {
        co_return;
    }
    QStringList names;
    for (const ProtectedItem &item : items) {
        names.append(item.originalName);
    }
    const auto shredOne = [this, items](qsizetype index, ProgressCallback itemProgress) {
        return shredProtectedItem(items.at(index), std::move(itemProgress));
    };
    const ShredOutcome outcome = co_await shredEach(names, ShredCounter::Position, shredOne, progressCallback);
    outcome.report(progressCallback);
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::shredUnprotectedItems(QStringList paths, ProgressCallback progressCallback)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater);
    if (!operation) {
        co_return;
    }
    for (const QString &path : paths) {
        if (const auto reason = reasonNotToShred(m_platform.fileManager, placesOfProgram(), path)) {
            throw QuillhavenError(QuillhavenError::accessDenied, *reason);
        }
    }
    co_await m_secureShredder.bulkShredItems(paths, progressCallback);
    operation->endSession();
}

} // namespace quillhaven
