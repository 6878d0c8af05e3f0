// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>

#include <functional>

namespace quillhaven {

/// Posts `job` to the main loop and runs it to its end with nobody awaiting it. The callable, with all it captured,
/// lives until then. An error that the job does not catch is logged. A job that has not started when the end of the
/// process is asked for never starts.
void startJob(std::function<QCoro::Task<>()> job);

} // namespace quillhaven
