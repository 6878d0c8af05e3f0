// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"

#include <QByteArray>

#include <vector>

namespace quillhaven {

/// The bytes of a path for the system calls. Throws `InvalidName` when the text does not stand for one path exactly:
/// it holds a null character or half of a surrogate pair that `decodedPath` did not make.
[[nodiscard]] QByteArray encodedPath(const QString &path, FileError::Action action);

/// The same without slashes at the end, after which the kernel would follow a link.
[[nodiscard]] QByteArray encodedItemPath(const QString &path, FileError::Action action);

/// The text of a path that the system gave. A byte that is not valid UTF-8 becomes half of a surrogate pair, as in
/// PEP 383, which `encodedPath` turns back: every name that a folder can hold makes the way there and back.
[[nodiscard]] QString decodedPath(const QByteArray &path);

/// Whether a name that is not valid UTF-8 was turned into this path: it then names no file.
[[nodiscard]] bool hasReplacementCharacter(const QString &path);

/// The folder that holds the path's last component.
[[nodiscard]] QByteArray parentOf(const QByteArray &path);

/// A fresh hidden name in the folder of `path`.
[[nodiscard]] QByteArray hiddenNameBeside(const QByteArray &path);

/// Whether anything, a dangling link included, stands at the path.
[[nodiscard]] bool standsAt(const QByteArray &path);

/// Brings the entries of the folders that hold these paths to the device; a folder that holds both only once. Where a
/// file system cannot do that for a folder, or the folder may not be read, its entries reach the device later.
/// False when the device failed.
bool syncParents(const QByteArray &path, const QByteArray &other = {});

/// The names in an open folder, sorted, without "." and "..". False with errno set when they cannot be read.
[[nodiscard]] bool readEntries(int folder, std::vector<QByteArray> &names);

} // namespace quillhaven
