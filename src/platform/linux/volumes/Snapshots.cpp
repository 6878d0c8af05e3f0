// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/Snapshots.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/volumes/BtrfsSnapshots.h"

#include <filesystem>

namespace quillhaven {

namespace {

/// Whether the folder exists and holds something. One that cannot be read counts too: the tools that make snapshots
/// close theirs to other users.
bool isFilledFolder(const QByteArray &path)
{
    namespace fs = std::filesystem;
    std::error_code failure;
    if (!fs::is_directory(fs::symlink_status(path.toStdString(), failure))) {
        return false;
    }
    const fs::directory_iterator entries(path.toStdString(), failure);
    return failure || entries != fs::directory_iterator();
}

} // namespace

bool hasSnapshots(const QByteArray &path, const MountEntry &mount)
{
    if (mount.type == "zfs") {
        return isFilledFolder(mount.mountPoint + "/.zfs/snapshot");
    }
    if (mount.type == "btrfs" && hasBtrfsSnapshots(path, mount.mountPoint)) {
        return true;
    }
    // Snapper keeps its snapshots there, those of LVM volumes too.
    for (QByteArray folder = parentOf(path); folder.startsWith(mount.mountPoint); folder = parentOf(folder)) {
        if (isFilledFolder(folder + "/.snapshots")) {
            return true;
        }
        if (folder == mount.mountPoint || folder == parentOf(folder)) {
            break;
        }
    }
    return false;
}

} // namespace quillhaven
