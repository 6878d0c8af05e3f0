// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"
#include "platform/RandomSource.h"
#include "platform/ReadWholeFile.h"
#include "platform/UserDirectories.h"

namespace quillhaven {

/// Creates a POSIX tar archive of a folder with the system's tar, in a work directory below the temporary one that is
/// removed afterwards. The archive has one top-level entry, the folder's own name. Reads it into memory as
/// `readWholeFile` does. Blocks. Throws QuillhavenError::encryptionFailed with tar's error message, or FileError.
[[nodiscard]] FileBuffer createFolderArchive(FileManager &fileManager, RandomSource &random,
                                             const UserDirectories &directories, const QString &folder, size_t headroom,
                                             size_t tailroom, ReadListener &listener);

/// Removes the work directories that a killed process left: each holds the plain content of a protected folder. To be
/// called before the first archive is made. What cannot be removed is logged.
void discardAbandonedArchives(FileManager &fileManager, const UserDirectories &directories) noexcept;

} // namespace quillhaven
