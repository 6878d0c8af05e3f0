// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>

#include <functional>

namespace quillhaven {

/// Posts `job` to the main loop and lets it run to its end without anybody waiting for it. The callable, with all it
/// captured, lives until then. An error that the job does not catch is logged.
void startJob(std::function<QCoro::Task<>()> job);

} // namespace quillhaven
