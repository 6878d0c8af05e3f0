// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/VolumeInspector.h"

#include <QString>

namespace quillhaven {

/// Says where the content of shredded items may survive, and what protects against that; follows the promise that it
/// does not. Empty when nothing is known.
[[nodiscard]] QString storageNote(const StorageFacts &facts);

} // namespace quillhaven
