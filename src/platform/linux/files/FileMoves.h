// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/AbandonedDuplicates.h"
#include "platform/linux/files/MoveNames.h"

struct stat;

namespace quillhaven {

/// The moves of a file manager. To another file system the item is copied, the copy compared and flushed, and only then
/// the source removed. Any thread may call them.
class FileMoves
{
public:
    /// Moves a file or folder to a free name; the contract is that of `FileManager::moveItem`.
    void move(const QByteArray &source, const QByteArray &target, const MoveNames &names);

    /// Copies a file or folder to a free name; the contract is that of `FileManager::copyItem`.
    void copy(const QByteArray &source, const QByteArray &target, const MoveNames &names);

    /// Puts one item in the place of another; the contract is that of `FileManager::replaceItemAt`.
    void replace(const QByteArray &original, const QByteArray &replacement, const MoveNames &names);

private:
    void moveAcross(const QByteArray &source, const QByteArray &target, const MoveNames &names);
    void replaceAcross(const QByteArray &original, const struct stat &oldStatus, const QByteArray &replacement,
                       const MoveNames &names);
    void cleanFoldersOf(const QByteArray &source, const QByteArray &target);

    CleanedFolders m_cleanedFolders;
};

/// `renameat2(RENAME_NOREPLACE)`. Where the file system does not know that flag: for a file a second link and the
/// removal of the old name, for a folder a check and a rename. Returns 0 or the error number.
[[nodiscard]] int renameWithoutReplacing(const QByteArray &source, const QByteArray &target);

/// The second way of `renameWithoutReplacing` by itself.
[[nodiscard]] int renameWithoutFlags(const QByteArray &source, const QByteArray &target);

} // namespace quillhaven
