// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>

namespace quillhaven {

/// Calls `announceEnd`, by which the next process of this program learns to wait for the end of this one, and starts
/// the program of this path as a process of its own. It is not waited for, and whether it started is only logged.
/// False, and nothing has happened, if no such program exists: then this one must go on.
[[nodiscard]] bool restartProgram(const QString &executable, const std::function<void()> &announceEnd);

} // namespace quillhaven
