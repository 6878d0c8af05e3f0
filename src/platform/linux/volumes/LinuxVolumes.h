// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"
#include "platform/VolumeInspector.h"
#include "platform/linux/volumes/BlockDevices.h"
#include "platform/linux/volumes/MountTable.h"

namespace quillhaven {

/// Finds what it says in the mount table, the block devices and the file systems' own calls.
class LinuxVolumes : public VolumeInspector
{
public:
    explicit LinuxVolumes(const UserDirectories &directories, const BlockDevices &devices = BlockDevices());

    [[nodiscard]] StorageFacts factsAbout(const QString &path) const override;

private:
    [[nodiscard]] std::vector<dev_t> devicesOf(const MountEntry &mount) const;
    /// Adds what is known of the disks below a file system of this computer.
    void addDisks(StorageFacts &facts, const MountEntry &mount, bool isFileEncrypted) const;

    QString m_cloudFolders; ///< the folders that hold backups, or links to them
    BlockDevices m_devices;
};

} // namespace quillhaven
