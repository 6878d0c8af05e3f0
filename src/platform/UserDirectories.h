// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// The user's own places, as absolute paths without a trailing slash.
struct UserDirectories
{
    QString home;
    QString applicationSupport; ///< data of programs, kept across reboots
    QString documents;
    QString temporary;     ///< this user's alone; the system may clear it
    QString configuration; ///< settings databases

    bool operator==(const UserDirectories &) const = default;
};

} // namespace quillhaven
