// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/MainThread.h"
#include "async/WorkInFlight.h"

#include <QCoroTask>

namespace quillhaven {

/// Continues from the main event loop, once everything that was posted to it before the call has been delivered. Main
/// thread only.
[[nodiscard]] inline QCoro::Task<> afterPosted()
{
    struct Turn
    {
        [[nodiscard]] bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const { resumeOnMainThread(waiting); }
        void await_resume() const noexcept {}
    };
    const WorkInFlight::Piece piece; // an operation that waits for its turn is under way
    const Turn turn;
    co_await turn;
}

} // namespace quillhaven
