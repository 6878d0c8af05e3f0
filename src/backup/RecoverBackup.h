// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace quillhaven {

class FileManager;

/// The name of a listed item, by its id.
using NameOfItem = std::function<std::optional<QString>(const QString &itemId)>;

/// Writes what a backup holds into `folder`, under the name in its own metadata, else that of the listed item, else its
/// id, over whatever has that name there. A backup that cannot be opened is copied as it is. The path that was written.
/// Blocks; throws FileError.
[[nodiscard]] QString recoverBackup(FileManager &files, const QString &backupPath, const QString &folder,
                                    const QString &masterPassword, const NameOfItem &nameOfItem);

} // namespace quillhaven
