// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/LockJobs.h"

#include "async/Jobs.h"
#include "engine/QuillhavenManager.h"
#include "settings/Settings.h"
#include "support/LocalizedError.h"

#include <optional>

namespace quillhaven::lockJobs {

namespace {

using LockOperation = QCoro::Task<> (QuillhavenManager::*)(ProtectedItem);

QCoro::Task<> lock(QuillhavenManager &engine, LockOperation operation, ProtectedItem item, Outcome outcome)
{
    const QString name = item.originalName;
    std::optional<QString> failure;
    try {
        co_await (engine.*operation)(std::move(item));
    } catch (const std::exception &error) {
        failure = localizedDescription(error);
    }
    if (failure) {
        outcome.failed(name, *failure);
    } else {
        outcome.succeeded(name);
    }
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
    QList<std::function<QCoro::Task<>()>> jobs;
    for (const ProtectedItem &item : items) {
        jobs.append([&engine, operation, item, outcome] { return lock(engine, operation, item, outcome); });
    }
    startJobs(std::move(jobs));
}

} // namespace quillhaven::lockJobs
