// SPDX-License-Identifier: GPL-3.0-or-later

// Every bulk operation passes the guard once, walks its list in order, one item at a time, and reports all failures in
// one error at the end. An item that fails never stops the run.

#include "async/StopForEnd.h"
#include "catalogue/QuillhavenError.h"
#include "engine/BulkRun.h"
#include "engine/OperationScope.h"
#include "engine/QuillhavenManager.h"
#include "platform/FilePanels.h"
#include "support/DisplayName.h"
#include "support/LocalizedError.h"
#include "support/Paths.h"

#include <QSet>

namespace quillhaven {

namespace {

/// The progress at which the items of a run begin that had to ask for access first, and the share that they have.
constexpr double afterAccess = 0.1;
constexpr double shareAfterAccess = 0.9;

double fraction(qsizetype index, qsizetype total)
{
    return static_cast<double>(index) / static_cast<double>(total);
}

QStringList originalPaths(const QList<ProtectedItem> &items)
{
    QStringList paths;
    for (const ProtectedItem &item : items) {
        paths.append(item.originalPath);
    }
    return paths;
}

QSet<QString> idsOf(const QList<ProtectedItem> &items)
{
    QSet<QString> ids;
    for (const ProtectedItem &item : items) {
        ids.insert(item.id);
    }
    return ids;
}

/// What is left to do for an item that another operation has given back before its turn came.
QCoro::Task<> doNothing()
{
    co_return;
}

QCoro::Task<> failWithoutAccess(QString name)
{
    throw QuillhavenError(QuillhavenError::accessDenied,
                          QStringLiteral("File access not granted for ") + displayName(name));
    co_return;
}

} // namespace

QCoro::Task<std::optional<QStringList>> QuillhavenManager::requestBulkFileAccess(QStringList paths)
{
    const AccessRequest request{.paths = paths,
                                .message =
                                    QStringLiteral("Please grant access to the selected items for bulk protection"),
                                .prompt = QStringLiteral("Grant Access")};
    std::optional<QStringList> selected;
    try {
        selected = co_await m_platform.panels.grantAccess(request);
    } catch (const LocalizedError &) {
        co_return std::nullopt; // dropped: without an answer there is nothing to do
    }
    if (!selected) {
        co_return std::nullopt;
    }
    const QSet<QString> isSelected(selected->begin(), selected->end());
    QStringList granted;
    for (const QString &path : paths) {
        if (isSelected.contains(path)) {
            granted.append(path);
        }
    }
    co_return granted;
}

QCoro::Task<> QuillhavenManager::bulkProtectItems(QStringList paths, QString password, bool useTouchID,
                                                  ProgressCallback progressCallback)
{
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater);
    if (!operation) {
        co_return;
    }
    progressCallback(QStringLiteral("Requesting file access..."), 0.0);
    const auto granted = co_await requestBulkFileAccess(distinctPlaces(m_platform.fileManager, paths));
    if (!granted) {
        co_return;
    }
    BulkRun run(granted->size(), progressCallback);
    for (qsizetype index = 0; index < granted->size() && !stopsForEnd(index, granted->size()); ++index) {
        const QString path = granted->at(index);
        const QString name = lastPathComponent(path);
        progressCallback(QStringLiteral("Protecting ") + displayName(name) + QStringLiteral("..."),
                         fraction(index, granted->size()));
        co_await run.settle(name, protectItemWithAccessibleURL(path, password, useTouchID));
    }
    run.finish(QStringLiteral("Some items failed to protect:\n"));
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::bulkWithAccess(QList<ProtectedItem> items, ItemOperation itemOperation,
                                                AccessTexts texts, ProgressCallback progressCallback)
{
    const QSet<QString> listed = idsOf(protectedItems());
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater);
    if (!operation) {
        co_return;
    }
    progressCallback(QStringLiteral("Requesting file access for %1 items...").arg(items.size()), 0.0);
    const auto paths = co_await requestBulkFileAccess(originalPaths(items));
    if (!paths) {
        co_return;
    }
    const QSet<QString> granted(paths->begin(), paths->end());
    BulkRun run(items.size(), progressCallback);
    for (qsizetype index = 0; index < items.size() && !stopsForEnd(index, items.size()); ++index) {
        const ProtectedItem &item = items.at(index);
        progressCallback(texts.verb + QLatin1Char(' ') + displayName(item.originalName) + QStringLiteral("..."),
                         fraction(index, items.size()) * shareAfterAccess + afterAccess);
        if (listed.contains(item.id) && !isListed(item.id)) {
            co_await run.settle(item.originalName, doNothing());
        } else if (granted.contains(item.originalPath)) {
            co_await run.settle(item.originalName, (this->*itemOperation)(item, item.originalPath));
        } else {
            co_await run.settle(item.originalName, failWithoutAccess(item.originalName));
        }
    }
    run.finish(texts.failureHeading);
    operation->endSession();
}

QCoro::Task<> QuillhavenManager::bulkUnlockItems(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    AccessTexts texts{.verb = QStringLiteral("Unlocking"),
                      .failureHeading = QStringLiteral("Some items failed to unlock:\n")};
    return bulkWithAccess(std::move(items), &QuillhavenManager::unlockItemWithAccessibleURL, std::move(texts),
                          std::move(progressCallback));
}

QCoro::Task<> QuillhavenManager::bulkRemoveProtection(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    AccessTexts texts{.verb = QStringLiteral("Removing protection from"),
                      .failureHeading = QStringLiteral("Some items failed to remove protection:\n")};
    return bulkWithAccess(std::move(items), &QuillhavenManager::removeProtectionWithAccessibleURL, std::move(texts),
                          std::move(progressCallback));
}

QCoro::Task<> QuillhavenManager::bulkLockItems(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    const QSet<QString> listed = idsOf(protectedItems());
    const auto operation = co_await OperationScope::begin(*this, OperationScope::Mark::EngineLater);
    if (!operation) {
        co_return;
    }
    BulkRun run(items.size(), progressCallback);
    for (qsizetype index = 0; index < items.size() && !stopsForEnd(index, items.size()); ++index) {
        const ProtectedItem &item = items.at(index);
        progressCallback(QStringLiteral("Locking ") + displayName(item.originalName) + QStringLiteral("..."),
                         fraction(index, items.size()));
        const bool isGone = listed.contains(item.id) && !isListed(item.id);
        co_await run.settle(item.originalName, isGone ? doNothing() : lockItemWithoutFileAccess(item));
    }
    run.finish(QStringLiteral("Some items failed to lock:\n"));
    operation->endSession();
}

} // namespace quillhaven
