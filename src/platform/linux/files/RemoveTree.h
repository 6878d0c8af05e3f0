// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// Removes a file, a link itself, or a folder with all it holds. Walks open folders, so that replacing a folder with a
/// link meanwhile does not lead it elsewhere, and enters no other volume. Throws a FileError that names the file which
/// could not be removed; all before it are removed.
void removeTree(const QByteArray &path);

/// Removes what is no longer needed. Tries twice; a second failure is logged.
void discardTree(const QByteArray &path) noexcept;

/// Throws the FileError for a lack of permission that `removeTree` would throw, before anything is removed: for a
/// folder in the tree that this user may not empty, or for another volume mounted in it.
void requireRemovable(const QByteArray &path);

} // namespace quillhaven
