// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

class FileManager;

/// The data of a locked item is in private storage under the item's id and this suffix.
inline const QString privateCopySuffix = QStringLiteral("_original");

/// `path`, or the first of `path` + "_1", "_2" and so on at which nothing exists. Blocks; throws FileError for a place
/// that cannot be looked at.
[[nodiscard]] QString freePrivatePath(const FileManager &files, const QString &path);

} // namespace quillhaven
