// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/LockJobs.h"

#include "async/Jobs.h"
#include "autolock/LockReport.h"
#include "engine/QuillhavenManager.h"
#include "settings/Settings.h"
#include "support/LocalizedError.h"

#include <memory>
#include <optional>

namespace quillhaven::lockJobs {

namespace {

using LockOperation = QCoro::Task<> (QuillhavenManager::*)(ProtectedItem);

/// A lock also ends well when the user has cancelled its question.
bool isLocked(const QuillhavenManager &engine, const QString &id)
{
    const ProtectedItem *item = engine.catalogue().item(id);
    return item && !item->isMounted;
}

void reportEnd(const LockReport &report, const Outcome &outcome)
{
    const QString text = report.text(outcome.cause);
    if (report.isComplete() && !text.isEmpty()) {
        outcome.ended(text);
    }
}

QCoro::Task<> lock(QuillhavenManager &engine, LockOperation operation, ProtectedItem item, Outcome outcome,
                   std::shared_ptr<LockReport> report)
{
    const QString id = item.id;
    const QString name = item.originalName;
    std::optional<QString> failure;
    try {
        co_await (engine.*operation)(std::move(item));
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (failure) {
        outcome.failed(name, *failure);
        report->failed(*failure);
    } else {
        outcome.succeeded(name);
        isLocked(engine, id) ? report->locked() : report->leftUnlocked();
    }
    reportEnd(*report, outcome);
}

} // namespace

QList<ProtectedItem> unlockedItems(const QuillhavenManager &engine)
{
    QList<ProtectedItem> unlocked;
    for (const ProtectedItem &item : engine.protectedItems()) {
        if (item.isMounted) {
            unlocked.append(item);
        }
    }
    return unlocked;
}

void start(QuillhavenManager &engine, const UserDefaults &defaults, const QList<ProtectedItem> &items,
           const Outcome &outcome)
{
    const LockOperation operation = settings::autoLockWithoutMasterPassword.read(defaults)
                                        ? &QuillhavenManager::lockItemUnattended
                                        : &QuillhavenManager::lockItem;
    const auto report = std::make_shared<LockReport>(items.size());
    QList<std::function<QCoro::Task<>()>> jobs;
    for (const ProtectedItem &item : items) {
        jobs.append(
            [&engine, operation, item, outcome, report] { return lock(engine, operation, item, outcome, report); });
    }
    startJobs(std::move(jobs));
}

} // namespace quillhaven::lockJobs
