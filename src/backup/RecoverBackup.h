// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace quillhaven {

class FileManager;

/// Writes the contents of a backup into `folder`, under the name in its metadata, else that of its item in the list,
/// else its id. A file or a link of that name is replaced; nothing is written outside the folder. A backup that cannot
/// be decrypted is copied as it is. Returns the path of the written file. Blocks; throws FileError.
[[nodiscard]] QString recoverBackup(FileManager &files, const QString &backupPath, const QString &folder,
                                    const QString &masterPassword, const std::optional<QString> &listedName);

} // namespace quillhaven
