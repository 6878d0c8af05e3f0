// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// Which store was the last to keep secrets, as noted in `credential-store.json` in the program's configuration folder.
///
/// A file of its own, since the settings may only be accessed on the main thread, and since it must be kept or lost
/// together with `credentials.db` in the same folder.
struct RememberedStore
{
    enum class Kind {
        None,       ///< nothing has been stored yet
        Keyring,    ///< the desktop's keyring that has the entry `marker`
        Embedded,   ///< the program's own store
        Unreadable, ///< there is a note that cannot be read
    };

    Kind kind = Kind::None;
    QString marker;

    bool operator==(const RememberedStore &) const = default;

    [[nodiscard]] static RememberedStore readFrom(const QString &directory);
    /// Writes the note and brings it to the device. Returns whether that worked.
    [[nodiscard]] bool writeTo(const QString &directory) const;
    /// Removes the note, if there is one.
    [[nodiscard]] static bool removeFrom(const QString &directory);
    [[nodiscard]] static QString path(const QString &directory);
};

} // namespace quillhaven
