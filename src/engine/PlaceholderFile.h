// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

class FileManager;

/// Writes the small text file that takes a locked item's place, not atomically; a piece of one that is there is
/// replaced. Anything else that is there stays, and there is no placeholder then. A failure leaves nothing, unless that
/// cannot be removed either, which is logged. Blocks; throws FileError.
void writePlaceholder(FileManager &fileManager, const QString &path);

/// Whether the file at `path` holds a whole placeholder and nothing else. False for a link. Blocks; throws FileError.
[[nodiscard]] bool holdsPlaceholder(const FileManager &fileManager, const QString &path);

/// Whether the file at `path` holds a placeholder or the beginning of one, which may be empty: the program ended while
/// it wrote it. False for a link. Blocks; throws FileError.
[[nodiscard]] bool holdsPieceOfPlaceholder(const FileManager &fileManager, const QString &path);

/// Whether a placeholder, or the beginning of one, is at `path` while the private copy of the item exists: the
/// program ended while it was locking, before the record said so. The data is in the private copy then.
[[nodiscard]] bool isLockInterrupted(const FileManager &fileManager, const QString &path, const QString &privateCopy);

/// The whole content of a placeholder, without a line end.
inline const QString placeholderText =
    QStringLiteral("This file is protected by Quillhaven. Use the app to unlock it.");

} // namespace quillhaven
