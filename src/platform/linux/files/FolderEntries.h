// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <QByteArray>

#include <vector>

namespace quillhaven {

/// The names in an open folder, sorted, without "." and "..". False with errno set when they cannot be read.
[[nodiscard]] bool readEntries(int folder, std::vector<QByteArray> &names);

/// Opens an entry of a folder for reading, which follows no link and waits for no FIFO. The access time is left alone
/// where the owner asks. Not open, with errno set, on failure.
[[nodiscard]] ScopedFd openWithoutAccessTime(int folder, const QByteArray &name, int flags = 0);

/// Brings the entries of the folders that hold these paths to the device; a folder that holds both only once. Where a
/// file system cannot do that for a folder, or the folder may not be read, its entries reach the device later.
/// False when the device failed.
bool syncParentFolders(const QByteArray &path, const QByteArray &other = {});

} // namespace quillhaven
