// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/login/AutostartFolders.h"

namespace quillhaven {

/// What the autostart entries of the program amount to. Any thread may call these functions.
struct AutostartState
{
    enum class Kind {
        Missing,
        Enabled,
        SwitchedOff,     ///< by the user or the desktop, in the entry or by hiding it
        ForOtherDesktop, ///< the entry is not for the present desktop
        CannotStart,     ///< the entry names a program that does not exist
        Foreign,         ///< the entry starts another program
        Unreadable,
    };

    Kind kind = Kind::Missing;
    QString path;     ///< of the entry that counts; empty if it is missing
    QString sentence; ///< for the user

    bool operator==(const AutostartState &) const = default;
};

/// What the desktop will do at the next login.
[[nodiscard]] AutostartState autostartState(const AutostartFolders &folders);

/// Writes the user's entry, so that the desktop starts the program with these arguments. What the user has added to it
/// stays. Throws a FileError if that is not possible, or if the file there starts another program: then it is left
/// as it is.
void registerAutostart(const AutostartFolders &folders, const QStringList &arguments);

/// Removes the user's entry. It is hidden instead if the user has added something to it, or if an entry of the system
/// would count without it. An entry that starts another program is left as it is. Throws a FileError.
void unregisterAutostart(const AutostartFolders &folders);

} // namespace quillhaven
