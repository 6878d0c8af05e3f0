// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <sys/types.h>
#include <vector>

namespace quillhaven {

/// The block devices and what they consist of, as the kernel describes them in sysfs: partitions of disks, and the
/// volumes that the device mapper and md build on other devices. Any thread.
class BlockDevices
{
public:
    struct Facts
    {
        bool isSolidState = false; ///< one of the disks below the device
        bool isEncrypted = false;  ///< all that the device writes reaches the disks encrypted
        bool hasSnapshots = false; ///< the device is an LVM volume of which there are snapshots

        bool operator==(const Facts &) const = default;
    };

    /// `sysfs` is where that file system is mounted.
    explicit BlockDevices(QString sysfs = QStringLiteral("/sys")) : m_sysfs(std::move(sysfs)) {}

    /// Nothing for a device that sysfs does not have.
    [[nodiscard]] Facts factsAbout(dev_t device) const;
    /// The devices of the btrfs file system that this device is one of; the device alone if there is none.
    [[nodiscard]] std::vector<dev_t> devicesOfBtrfs(dev_t device) const;

private:
    QString m_sysfs;
};

} // namespace quillhaven
