// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"

namespace quillhaven {

/// Lists the regular files below a folder; the contract is that of `FileManager::regularFilesBelow`.
[[nodiscard]] QList<FileEntry> walkRegularFiles(const QString &folder);

} // namespace quillhaven
