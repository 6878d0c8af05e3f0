// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace quillhaven {

class FileManager;

/// Keeps what has taken the place of an item that comes back from `privateCopy`: anything but a placeholder, whole or
/// in part, and a duplicate of the private copy itself. It is renamed beside the place, to a free name that says so,
/// which is returned; nothing when there was nothing to keep, or when there is no private copy to come back. Blocks;
/// throws FileError.
std::optional<QString> keepForeignItemAside(FileManager &files, const QString &place, const QString &privateCopy);

/// Gives the item at `path` a free name beside it that says that it was kept; the new path. Blocks; throws FileError.
QString keepAside(FileManager &files, const QString &path);

} // namespace quillhaven
