// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/BtrfsSnapshots.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/ScopedFd.h"

#include <array>
#include <fcntl.h>
#include <linux/btrfs.h>
#include <linux/btrfs_tree.h>
#include <optional>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace quillhaven {

namespace {

using Uuid = std::array<uint8_t, BTRFS_UUID_SIZE>;

struct Subvolume
{
    Uuid uuid{};
    Uuid source{}; ///< of which it is a snapshot; nulls if it is none
};

ScopedFd openFolder(int base, const QByteArray &path)
{
    return ScopedFd(::openat(base, path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

std::optional<Subvolume> subvolumeOf(int folder)
{
    btrfs_ioctl_get_subvol_info_args info{};
    if (::ioctl(folder, BTRFS_IOC_GET_SUBVOL_INFO, &info) < 0) { // it may succeed with a positive number
        return std::nullopt;
    }
    return Subvolume{.uuid = std::to_array(info.uuid), .source = std::to_array(info.parent_uuid)};
}

/// The root of the subvolume at or above the path, which has a number of its own.
QByteArray rootOfSubvolume(QByteArray path, const QByteArray &mountPoint)
{
    struct stat status{};
    while (path != mountPoint && path != parentOf(path) &&
           (::lstat(path.constData(), &status) != 0 || !S_ISDIR(status.st_mode) ||
            status.st_ino != BTRFS_FIRST_FREE_OBJECTID)) {
        path = parentOf(path);
    }
    return path;
}

/// Whether this entry of the subvolume at `root` is a snapshot of `original`.
bool isSnapshot(int root, const btrfs_ioctl_get_subvol_rootref_args &children, size_t index, const Uuid &original)
{
    btrfs_ioctl_ino_lookup_user_args lookup{};
    lookup.dirid = children.rootref[index].dirid;
    lookup.treeid = children.rootref[index].treeid;
    if (::ioctl(root, BTRFS_IOC_INO_LOOKUP_USER, &lookup) < 0) {
        return false;
    }
    const ScopedFd child = openFolder(root, QByteArray(lookup.path) + lookup.name); // the path ends with a slash
    const auto subvolume = child.isOpen() ? subvolumeOf(child.get()) : std::nullopt;
    return subvolume && subvolume->source == original;
}

/// Whether one of the subvolumes directly in the one at `root` is a snapshot of `original`.
bool holdsSnapshot(int root, const Uuid &original)
{
    btrfs_ioctl_get_subvol_rootref_args children{};
    bool isMore = true;
    while (isMore) {
        isMore = ::ioctl(root, BTRFS_IOC_GET_SUBVOL_ROOTREF, &children) < 0;
        if (isMore && errno != EOVERFLOW) {
            return false;
        }
        for (size_t i = 0; i < children.num_items; ++i) {
            if (isSnapshot(root, children, i, original)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

bool hasBtrfsSnapshots(const QByteArray &path, const QByteArray &mountPoint)
{
    const ScopedFd own = openFolder(AT_FDCWD, rootOfSubvolume(path, mountPoint));
    const auto subvolume = own.isOpen() ? subvolumeOf(own.get()) : std::nullopt;
    if (!subvolume) {
        return false;
    }
    const ScopedFd top = openFolder(AT_FDCWD, mountPoint);
    return holdsSnapshot(own.get(), subvolume->uuid) || (top.isOpen() && holdsSnapshot(top.get(), subvolume->uuid));
}

} // namespace quillhaven
