// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/VolumeInspector.h"

namespace quillhaven {

StorageFacts &StorageFacts::operator|=(const StorageFacts &other)
{
    isSolidState |= other.isSolidState;
    isCopyOnWrite |= other.isCopyOnWrite;
    sharesBlocks |= other.sharesBlocks;
    isRemote |= other.isRemote;
    isSynced |= other.isSynced;
    hasSnapshots |= other.hasSnapshots;
    isUnencrypted |= other.isUnencrypted;
    return *this;
}

} // namespace quillhaven
