// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/LinuxVolumes.h"

namespace quillhaven {

StorageFacts LinuxVolumes::factsAbout(const QString &path) const
{
    Q_UNUSED(path)
    return {};
}

} // namespace quillhaven
