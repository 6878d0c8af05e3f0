// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

enum class AfterStartFailure { Quit, TryAgain };

/// Says in the log and in a window why the program cannot start, and asks what to do. A signal that asks the process to
/// end is an answer too. Where no window can be seen, the answer is Quit at once. Needs a QApplication whose event loop
/// does not run; `TerminationSignals` must be blocked and have no object.
[[nodiscard]] AfterStartFailure reportStartFailure(const QString &reason);

} // namespace quillhaven
