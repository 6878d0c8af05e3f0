// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/RestartProgram.h"

#include "support/DetachedProcess.h"
#include "support/printLogger.h"

#include <QFile>
#include <QFileInfo>

namespace quillhaven {

bool restartProgram(const QString &executable, const std::function<void()> &announceEnd)
{
    if (!QFileInfo(executable).isExecutable()) {
        printLogger(QStringLiteral("⚠️ The program cannot be started again, because it does not exist: ") + executable);
        return false;
    }
    announceEnd();
    if (!startDetached(QFile::encodeName(executable), {})) {
        printLogger(QStringLiteral("⚠️ The program could not be started again: ") + executable);
    }
    return true;
}

} // namespace quillhaven
