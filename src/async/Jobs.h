// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QList>

#include <QPointer>

#include <functional>
#include <utility>

namespace quillhaven {

/// Posts `job` to the main loop and runs it to its end with nobody awaiting it. The callable, with all it captured,
/// lives until then. An error that the job does not catch is logged. A job that has not started when the end of the
/// process is asked for never starts.
void startJob(std::function<QCoro::Task<>()> job);

/// The same for `operation(object)`. It does not run if the object no longer exists at that time; once it runs, the
/// object must outlive it or guard itself.
template <typename Object, typename Operation>
void startJobOf(Object *object, Operation operation)
{
    startJob([guard = QPointer<Object>(object), operation = std::move(operation)]() -> QCoro::Task<> {
        if (guard) {
            co_await operation(*guard);
        }
    });
}

/// Starts the jobs in their order, each in a turn of the main loop of its own, so that many of them leave the program
/// responsive. Main thread only.
void startJobs(QList<std::function<QCoro::Task<>()>> jobs);

} // namespace quillhaven
