// SPDX-License-Identifier: GPL-3.0-or-later

// Every bulk operation passes the guard once, walks its list in order, one item at a time, and reports all failures in
// one error at the end. An item that fails never stops the run.

#include "catalogue/QuillhavenError.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/FilePanels.h"
#include "support/Paths.h"

#include <QSet>

namespace quillhaven {

namespace {

/// Where the items of a run begin that had to ask for access first, and the share of progress that they have.
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

QString requestingStatus(qsizetype count)
{
    return QStringLiteral("Requesting file access for %1 items...").arg(count);
}

QCoro::Task<> failWithoutAccess(QString name)
{
    throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("File access not granted for ") + name);
    co_return;
}

} // namespace

QCoro::Task<QStringList> QuillhavenManager::requestBulkFileAccess(QStringList paths)
{
    const AccessRequest request{.paths = paths,
                                .message =
                                    QStringLiteral("Please grant access to the selected items for bulk protection"),
                                .prompt = QStringLiteral("Grant Access")};
    const std::optional<QStringList> selected = co_await m_platform.panels.grantAccess(request);
    if (!selected) {
        throw QuillhavenError(QuillhavenError::accessDenied, QStringLiteral("File access was denied by the user"));
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

QCoro::Task<> QuillhavenManager::runBulk(BulkRun run, ProgressCallback progressCallback)
{
    if (!co_await m_masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    setIsProcessing(true);
    QList<BulkStep> steps;
    bool isDismissed = false;
    try {
        steps = co_await run.prepare();
    } catch (const LocalizedError &) {
        isDismissed = true; // The access panel is the only thing that can fail there; its dismissal is no error.
    } catch (...) {
        stopProcessingLater();
        throw;
    }
    qsizetype succeeded = 0;
    QStringList errorLines;
    for (const BulkStep &step : std::as_const(steps)) {
        progressCallback(step.status, step.progress);
        try {
            co_await step.work();
            ++succeeded;
        } catch (...) {
            errorLines.append(step.name + QStringLiteral(": ") + localizedDescription(std::current_exception()));
        }
    }
    stopProcessingLater();
    if (isDismissed) {
        co_return;
    }
    progressCallback(QStringLiteral("Completed %1 of %2 items").arg(succeeded).arg(steps.size()), 1.0);
    if (!errorLines.isEmpty()) {
        throw QuillhavenError(QuillhavenError::encryptionFailed,
                              run.failureHeading + errorLines.join(QLatin1Char('\n')));
    }
    m_masterPasswordManager.endSession();
}

QCoro::Task<> QuillhavenManager::bulkProtectItems(QStringList paths, QString password, bool useTouchID,
                                                  ProgressCallback progressCallback)
{
    BulkRun run{.failureHeading = QStringLiteral("Some items failed to protect:\n"), .prepare = {}};
    run.prepare = [this, paths, password, useTouchID, progressCallback] {
        return protectSteps(paths, password, useTouchID, progressCallback);
    };
    return runBulk(std::move(run), std::move(progressCallback));
}

QCoro::Task<QList<QuillhavenManager::BulkStep>>
QuillhavenManager::protectSteps(QStringList paths, QString password, bool useTouchID, ProgressCallback progressCallback)
{
    progressCallback(QStringLiteral("Requesting file access..."), 0.0);
    const QStringList granted = co_await requestBulkFileAccess(distinctPlaces(m_platform.fileManager, paths));
    QList<BulkStep> steps;
    for (const QString &path : granted) {
        const QString name = lastPathComponent(path);
        steps.append({.name = name,
                      .status = QStringLiteral("Protecting ") + name + QStringLiteral("..."),
                      .progress = fraction(steps.size(), granted.size()),
                      .work = [this, path, password, useTouchID] {
                          return protectItemWithAccessibleURL(path, password, useTouchID);
                      }});
    }
    co_return steps;
}

QCoro::Task<QList<QuillhavenManager::BulkStep>> QuillhavenManager::stepsWithAccess(QList<ProtectedItem> items,
                                                                                   QString verb,
                                                                                   ItemOperation operation,
                                                                                   ProgressCallback progressCallback)
{
    progressCallback(requestingStatus(items.size()), 0.0);
    const QStringList paths = co_await requestBulkFileAccess(originalPaths(items));
    const QSet<QString> granted(paths.begin(), paths.end());
    QList<BulkStep> steps;
    for (const ProtectedItem &item : std::as_const(items)) {
        const bool isGranted = granted.contains(item.originalPath);
        steps.append({.name = item.originalName,
                      .status = verb + QLatin1Char(' ') + item.originalName + QStringLiteral("..."),
                      .progress = fraction(steps.size(), items.size()) * shareAfterAccess + afterAccess,
                      .work = [this, item, isGranted, operation] {
                          return isGranted ? (this->*operation)(item, item.originalPath)
                                           : failWithoutAccess(item.originalName);
                      }});
    }
    co_return steps;
}

QCoro::Task<> QuillhavenManager::bulkUnlockItems(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    BulkRun run{.failureHeading = QStringLiteral("Some items failed to unlock:\n"), .prepare = {}};
    run.prepare = [this, items, progressCallback] {
        return stepsWithAccess(items, QStringLiteral("Unlocking"), &QuillhavenManager::unlockItemWithAccessibleURL,
                               progressCallback);
    };
    return runBulk(std::move(run), std::move(progressCallback));
}

QCoro::Task<> QuillhavenManager::bulkRemoveProtection(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    BulkRun run{.failureHeading = QStringLiteral("Some items failed to remove protection:\n"), .prepare = {}};
    run.prepare = [this, items, progressCallback] {
        return stepsWithAccess(items, QStringLiteral("Removing protection from"),
                               &QuillhavenManager::removeProtectionWithAccessibleURL, progressCallback);
    };
    return runBulk(std::move(run), std::move(progressCallback));
}

QCoro::Task<QList<QuillhavenManager::BulkStep>> QuillhavenManager::lockSteps(QList<ProtectedItem> items)
{
    QList<BulkStep> steps;
    for (const ProtectedItem &item : std::as_const(items)) {
        steps.append({.name = item.originalName,
                      .status = QStringLiteral("Locking ") + item.originalName + QStringLiteral("..."),
                      .progress = fraction(steps.size(), items.size()),
                      .work = [this, item] { return lockItemWithoutFileAccess(item); }});
    }
    co_return steps;
}

QCoro::Task<> QuillhavenManager::bulkLockItems(QList<ProtectedItem> items, ProgressCallback progressCallback)
{
    BulkRun run{.failureHeading = QStringLiteral("Some items failed to lock:\n"), .prepare = {}};
    run.prepare = [this, items] { return lockSteps(items); };
    return runBulk(std::move(run), std::move(progressCallback));
}

} // namespace quillhaven
