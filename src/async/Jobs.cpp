// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/Jobs.h"

#include "async/MainThread.h"
#include "async/WorkInFlight.h"
#include "support/LocalizedError.h"
#include "support/printLogger.h"

#include <QCoreApplication>
#include <QTimer>

#include <memory>

namespace quillhaven {

namespace {

QCoro::Task<> runToEnd(std::shared_ptr<std::function<QCoro::Task<>()>> job)
{
    try {
        co_await (*job)();
    } catch (...) {
        printLogger(QStringLiteral("❌ A job ended with an error that nobody handled: ") +
                    localizedDescription(std::current_exception()));
    }
}

void startFrom(qsizetype index, const std::shared_ptr<QList<std::function<QCoro::Task<>()>>> &jobs)
{
    startJob(std::move((*jobs)[index]));
    if (index + 1 < jobs->size()) {
        // A posted event would run in the same turn as the job.
        QTimer::singleShot(0, QCoreApplication::instance(), [index, jobs] { startFrom(index + 1, jobs); });
    }
}

} // namespace

void startJob(std::function<QCoro::Task<>()> job)
{
    auto kept = std::make_shared<std::function<QCoro::Task<>()>>(std::move(job));
    postToMainThread([kept = std::move(kept)] {
        if (WorkInFlight::isClosing()) {
            printLogger(QStringLiteral("⚠️ A job was not started, because the program is ending"));
        } else {
            runToEnd(kept);
        }
    });
}

void startJobs(QList<std::function<QCoro::Task<>()>> jobs)
{
    if (!jobs.isEmpty()) {
        startFrom(0, std::make_shared<QList<std::function<QCoro::Task<>()>>>(std::move(jobs)));
    }
}

} // namespace quillhaven
