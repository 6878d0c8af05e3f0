// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/AutostartFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quillhaven {

bool AutostartFolders::isProgram(const QString &command) const
{
    if (!command.isEmpty() && QDir::cleanPath(command) == QDir::cleanPath(executable)) {
        return true;
    }
    const QString found = executableOf(command);
    return !found.isEmpty() && QFileInfo(found).canonicalFilePath() == QFileInfo(executable).canonicalFilePath();
}

AutostartFolders autostartFolders(const QString &applicationId, const QString &executable)
{
    const QString autostart = QStringLiteral("/autostart");
    AutostartFolders folders;
    folders.user = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) + autostart;
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation).mid(1)) {
        folders.system.append(QDir::cleanPath(folder) + autostart);
    }
    folders.fileName = applicationId + QStringLiteral(".desktop");
    folders.executable = executable;
    folders.desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return folders;
}

QString executableOf(const QString &command)
{
    // Also checks that an absolute path is executable.
    return command.isEmpty() ? QString() : QStandardPaths::findExecutable(command);
}

} // namespace quillhaven
