// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace quillhaven {

class FileManager;

/// The name of a listed item, by its id.
using NameOfItem = std::function<std::optional<QString>(const QString &itemId)>;

/// Writes the contents of a backup into `folder`, under the name in its metadata, else that of the listed item, else
/// its id. A file of that name is replaced. A backup that cannot be decrypted is copied as it is. Returns the path of
/// the written file. Blocks; throws FileError.
[[nodiscard]] QString recoverBackup(FileManager &files, const QString &backupPath, const QString &folder,
                                    const QString &masterPassword, const NameOfItem &nameOfItem);

} // namespace quillhaven
