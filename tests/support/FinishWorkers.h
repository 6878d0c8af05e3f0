#pragma once

#include <QThreadPool>

namespace quillhaven::testing {

/// Joins the worker threads. A thread that still ends while the process does leaves what a library keeps for it, which
/// reads as a leak.
inline void finishWorkers()
{
    QThreadPool::globalInstance()->waitForDone();
}

} // namespace quillhaven::testing
