// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// Removes a file, a link itself, or a folder with all it holds. Walks open folders, so that a folder which somebody
/// turns into a link meanwhile leads nowhere else, and enters no other volume. Throws a FileError that names the file
/// which could not go; what came before it is gone.
void removeTree(const QByteArray &path);

/// Removes what nobody needs any more: once more when it did not work at first, and after that with no more than a line
/// in the log.
void discardTree(const QByteArray &path) noexcept;

/// Throws the FileError that `removeTree` would meet for want of permission, before anything is gone: a folder in the
/// tree that this user may not empty, or another volume mounted in it.
void requireRemovable(const QByteArray &path);

} // namespace quillhaven
