// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// What a removal does with a folder of this user's own that does not allow its entries to be removed.
enum class ReadOnlyFolders { Respect, Open };

/// Removes a file, a link itself, or a folder with all it holds. Walks open folders, so that replacing a folder with a
/// link meanwhile does not lead it elsewhere, and enters no other volume. Throws a FileError that names the file which
/// could not be removed; all before it are removed.
void removeTree(const QByteArray &path, ReadOnlyFolders readOnlyFolders = ReadOnlyFolders::Respect);

/// Removes what is no longer needed, read-only folders included. Tries twice; a second failure is logged.
void discardTree(const QByteArray &path) noexcept;

/// Throws the FileError for a lack of permission that `discardTree` would meet, before anything is removed: for a
/// folder in the tree that this user may not empty, or for another volume mounted in it.
void requireRemovable(const QByteArray &path);

} // namespace quillhaven
