// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/VolumeInspector.h"

namespace quillhaven {

/// Finds what it says in the mount table, the block devices and the file systems' own calls.
class LinuxVolumes : public VolumeInspector
{
public:
    [[nodiscard]] StorageFacts factsAbout(const QString &path) const override;
};

} // namespace quillhaven
