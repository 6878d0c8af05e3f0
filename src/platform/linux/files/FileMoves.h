// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/CrossDeviceCopy.h"

namespace quillhaven {

/// Moves a file or folder to a name where nothing stands; the contract is that of `FileManager::moveItem`.
void moveTo(const QByteArray &source, const QByteArray &target, const MoveNames &names);

/// Copies a file or folder to a name where nothing stands; the contract is that of `FileManager::copyItem`.
void copyTo(const QByteArray &source, const QByteArray &target, const MoveNames &names);

/// Puts one item in the place of another; the contract is that of `FileManager::replaceItemAt`.
void putInPlaceOf(const QByteArray &original, const QByteArray &replacement, const MoveNames &names);

/// `renameat2(RENAME_NOREPLACE)`, and where the file system does not know it: a link and the removal of the old name,
/// or for a folder a look and a rename. Returns 0 or the error number.
[[nodiscard]] int renameWithoutReplacing(const QByteArray &source, const QByteArray &target);

/// The second way of `renameWithoutReplacing` by itself.
[[nodiscard]] int renameWithoutFlags(const QByteArray &source, const QByteArray &target);

} // namespace quillhaven
