// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/EntryFolders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace quillhaven {

namespace {

EntryFolders foldersBelow(QStandardPaths::StandardLocation location, const QString &name, const QString &applicationId,
                          const QString &executable)
{
    EntryFolders folders;
    folders.user = QDir::cleanPath(QStandardPaths::writableLocation(location)) + name;
    for (const QString &folder : QStandardPaths::standardLocations(location).mid(1)) {
        folders.system.append(QDir::cleanPath(folder) + name);
    }
    folders.fileName = applicationId + QStringLiteral(".desktop");
    folders.executable = executable;
    folders.desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return folders;
}

} // namespace

bool EntryFolders::isProgram(const QString &command) const
{
    if (!command.isEmpty() && QDir::cleanPath(command) == QDir::cleanPath(executable)) {
        return true;
    }
    const QString found = executableOf(command);
    return !found.isEmpty() && QFileInfo(found).canonicalFilePath() == QFileInfo(executable).canonicalFilePath();
}

EntryFolders autostartFolders(const QString &applicationId, const QString &executable)
{
    return foldersBelow(QStandardPaths::GenericConfigLocation, QStringLiteral("/autostart"), applicationId, executable);
}

EntryFolders applicationFolders(const QString &applicationId, const QString &executable)
{
    return foldersBelow(QStandardPaths::GenericDataLocation, QStringLiteral("/applications"), applicationId,
                        executable);
}

QString executableOf(const QString &command)
{
    // Also checks that an absolute path is executable.
    return command.isEmpty() ? QString() : QStandardPaths::findExecutable(command);
}

} // namespace quillhaven
