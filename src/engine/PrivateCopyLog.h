// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

class FileManager;

/// Logs where the private copy of an item is looked for, and whether its folder is there.
void logPrivateCopySearch(const FileManager &fileManager, const QString &backupPath);

/// Logs what the folder of a missing private copy holds instead.
void logPrivateCopyIsMissing(const FileManager &fileManager, const QString &backupPath);

} // namespace quillhaven
