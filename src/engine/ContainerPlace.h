// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"
#include "platform/FileManager.h"
#include "platform/UserDirectories.h"

#include <QString>

#include <optional>

namespace quillhaven {

/// Where the container of an item with this name is written.
[[nodiscard]] QString containerPathFor(const UserDirectories &directories, const QString &originalName);

/// Throws unless the container of the item at `path` can be written to its place: its name is not too long, neither a
/// link nor a folder has it, and the volume has room for it. Blocks. `secureStorage` is where the item itself will be;
/// `items` are those of the list.
void requirePlaceForContainer(const FileManager &files, const UserDirectories &directories,
                              const QString &secureStorage, const QList<ProtectedItem> &items, const QString &path);

/// Takes a file of a container's name that belongs to none of the items out of the way: to the trash, or beside its
/// place under another name where there is no trash. Blocks; throws FileError.
///
/// Nothing when there was no such file. Otherwise its new path, which is empty when it is in the trash.
std::optional<QString> keepForeignContainer(FileManager &files, const QList<ProtectedItem> &items,
                                            const QString &containerPath);

/// Whether the file at `path` begins like a container or is the marker of a folder. False for what cannot be read.
/// Blocks.
[[nodiscard]] bool isContainer(const FileManager &files, const QString &path);

} // namespace quillhaven
