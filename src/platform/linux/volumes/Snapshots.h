// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/volumes/MountTable.h"

namespace quillhaven {

/// Whether the file system has snapshots that may hold what the file or folder at the path held before, as far as a
/// user without special rights can see. `mount` is the one that the path lies on.
[[nodiscard]] bool hasSnapshots(const QByteArray &path, const MountEntry &mount);

} // namespace quillhaven
