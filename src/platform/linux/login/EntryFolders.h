// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"

#include <QStringList>

namespace quillhaven {

/// Where the desktop looks for the programs that it starts at login (Desktop Application Autostart Specification 0.5),
/// and which program is to be found there.
struct AutostartFolders
{
    QString user;         ///< its entry hides those of the same name in the other folders
    QStringList system;   ///< the first that has the entry counts
    QString fileName;     ///< of the program's entry, in each of the folders
    QString executable;   ///< absolute path of the program
    QStringList desktops; ///< the names of the present desktop, as in OnlyShowIn; may be empty

    [[nodiscard]] QString userEntry() const { return user + QLatin1Char('/') + fileName; }
    /// Whether this command starts the program: by its path, a link to it, or a name that is found in PATH.
    [[nodiscard]] bool isProgram(const QString &command) const;
};

/// The folders of this process's environment, for the entry of this application.
[[nodiscard]] AutostartFolders autostartFolders(const QString &applicationId, const QString &executable);

/// The file that a command of a desktop entry starts; empty if it does not exist or cannot be executed.
[[nodiscard]] QString executableOf(const QString &command);

} // namespace quillhaven
