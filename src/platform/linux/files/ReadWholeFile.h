// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileBuffer.h"
#include "platform/ReadListener.h"

#include <QString>

namespace quillhaven {

/// Reads an open regular file as `FileManager::readFile` tells; `path` is for the sentence of an error.
[[nodiscard]] FileBuffer readWholeFile(int file, const QString &path, size_t headroom, size_t tailroom,
                                       ReadListener &listener);

} // namespace quillhaven
