// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"

#include <QByteArray>

namespace quillhaven {

/// The bytes of a path for the system calls. Throws `InvalidName` for text that is not exactly one path: it holds a
/// null character, or half of a surrogate pair that `decodedPath` did not make.
[[nodiscard]] QByteArray encodedPath(const QString &path, FileError::Action action);

/// The same without slashes at the end, after which the kernel would follow a link.
[[nodiscard]] QByteArray encodedItemPath(const QString &path, FileError::Action action);

/// The text of a path that the system gave. A byte that is not valid UTF-8 becomes half of a surrogate pair, as in
/// PEP 383, and `encodedPath` turns it back: no name that a folder can hold is lost on the way.
[[nodiscard]] QString decodedPath(const QByteArray &path);

/// Whether a name that is not valid UTF-8 was turned into this path: it then names no file.
[[nodiscard]] bool hasReplacementCharacter(const QString &path);

/// A path without slashes at its end.
[[nodiscard]] QByteArray withoutTrailingSlashes(const QByteArray &path);

/// The folder that holds the path's last component.
[[nodiscard]] QByteArray parentOf(const QByteArray &path);

/// The path's last component.
[[nodiscard]] QByteArray nameOf(const QByteArray &path);

} // namespace quillhaven
