// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoroTask>
#include <QStringList>

namespace quillhaven {

/// How a program ended.
struct ToolEnd
{
    int status = 0; ///< its exit code, or -1 after a signal
    QString output; ///< what it wrote to standard output
};

/// Runs a program to its end, while the main loop goes on. Its errors go to ours. Throws a LocalizedError when it
/// cannot be started.
[[nodiscard]] QCoro::Task<ToolEnd> runTool(QString program, QStringList arguments);

} // namespace quillhaven
