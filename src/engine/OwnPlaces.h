// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "platform/FileManager.h"
#include "platform/UserDirectories.h"

#include <QStringList>

#include <optional>

namespace quillhaven {

/// What the program itself needs at its place.
struct OwnPlaces
{
    QStringList needed;           ///< must stay where they are, and so must the folders above them
    QStringList own;              ///< nothing that lies in them is the user's
    std::optional<QString> cloud; ///< holds the recovery backups
};

[[nodiscard]] OwnPlaces ownPlaces(const UserDirectories &directories, const QString &secureStorage,
                                  const std::optional<QString> &cloudDirectory);

/// A sentence that says why the file or folder at `path` cannot be protected: the program needs it, or a folder in it,
/// at its place; it belongs to the program; or it is the encrypted copy or the backup of one of the items. Nothing when
/// none of these holds. Files are compared by what they are, not by how their paths are spelled.
[[nodiscard]] std::optional<QString> reasonNotToProtect(const FileManager &files, const OwnPlaces &places,
                                                        const QList<ProtectedItem> &items, const QString &path);

/// A sentence that says why recovery backups cannot be kept in the folder at `path`: it is one of the program's own, or
/// lies in one, or it is the home or the documents folder itself, or it cannot be written to. Nothing when none of
/// these holds.
[[nodiscard]] std::optional<QString> reasonNotToKeepBackups(const FileManager &files, const OwnPlaces &places,
                                                            const QString &path);

/// The same for the shredding of what is no item: with the program's own places, the data of every item would go.
[[nodiscard]] std::optional<QString> reasonNotToShred(const FileManager &files, const OwnPlaces &places,
                                                      const QString &path);

} // namespace quillhaven
