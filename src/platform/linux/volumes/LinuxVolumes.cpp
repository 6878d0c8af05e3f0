// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/LinuxVolumes.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/volumes/SharedExtents.h"
#include "platform/linux/volumes/Snapshots.h"
#include "platform/linux/volumes/SyncedFolders.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quillhaven {

namespace {

template <size_t Count>
bool isOneOf(const std::array<std::string_view, Count> &types, const QByteArray &type)
{
    return std::ranges::find(types, std::string_view(type.constData())) != types.end();
}

bool isInMemory(const QByteArray &type)
{
    return isOneOf(std::to_array<std::string_view>({"tmpfs", "ramfs"}), type);
}

/// A program's file system on a disk of this computer has the type "fuseblk".
bool isRemote(const QByteArray &type)
{
    static constexpr auto types =
        std::to_array<std::string_view>({"9p", "afs", "ceph", "cifs", "coda", "davfs", "fuse", "gfs2", "lustre",
                                         "ncpfs", "nfs", "nfs4", "orangefs", "smb3", "smbfs", "vboxsf", "virtiofs"});
    return isOneOf(types, type) || type.startsWith("fuse.");
}

bool isCopyOnWrite(const QByteArray &type)
{
    // An overlay leaves the file in its lower layer as it was.
    static constexpr auto types =
        std::to_array<std::string_view>({"bcachefs", "btrfs", "f2fs", "jffs2", "nilfs2", "overlay", "ubifs", "zfs"});
    return isOneOf(types, type);
}

bool canShareExtents(const QByteArray &type)
{
    return isOneOf(std::to_array<std::string_view>({"bcachefs", "btrfs", "ocfs2", "xfs"}), type);
}

/// The path without links above its last component. Nothing when that folder does not exist.
std::optional<QByteArray> resolved(const QString &path)
{
    QByteArray item;
    try {
        item = encodedItemPath(path, FileError::Action::Read);
    } catch (const FileError &) {
        return std::nullopt; // no file has such a name
    }
    const std::unique_ptr<char, decltype(&std::free)> folder(::realpath(parentOf(item).constData(), nullptr),
                                                             &std::free);
    if (!folder) {
        return std::nullopt;
    }
    const QByteArray place(folder.get());
    return (place == "/" ? place : place + '/') + nameOf(item);
}

std::optional<struct statx> statusOf(const QByteArray &path)
{
    struct statx status{};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT;
    const bool isKnown = ::statx(AT_FDCWD, path.constData(), flags, STATX_TYPE | STATX_MNT_ID, &status) == 0;
    return isKnown ? std::optional(status) : std::nullopt;
}

std::optional<MountEntry> mountOf(const struct statx &status)
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    const bool isKnown = (status.stx_mask & STATX_MNT_ID) != 0 && table.open(QIODevice::ReadOnly);
    return isKnown ? findMount(table.readAll(), status.stx_mnt_id) : std::nullopt;
}

} // namespace

LinuxVolumes::LinuxVolumes(const UserDirectories &directories, const BlockDevices &devices)
    : m_cloudFolders(directories.applicationSupport + QStringLiteral("/cloud")), m_devices(devices)
{
}

StorageFacts LinuxVolumes::factsAbout(const QString &path) const
{
    const auto place = resolved(path);
    const auto status = place ? statusOf(*place) : std::nullopt;
    const auto mount = status ? mountOf(*status) : std::nullopt;
    if (!mount || isInMemory(mount->type)) {
        return {};
    }
    StorageFacts facts;
    facts.isSynced = isSynced(QFile::decodeName(*place), m_cloudFolders);
    facts.isRemote = isRemote(mount->type);
    if (!facts.isRemote) {
        facts.isCopyOnWrite = isCopyOnWrite(mount->type);
        facts.sharesBlocks = canShareExtents(mount->type) && hasSharedExtents(*place);
        facts.hasSnapshots = hasSnapshots(*place, *mount);
        addDisks(facts, *mount, (status->stx_attributes & STATX_ATTR_ENCRYPTED) != 0);
    }
    return facts;
}

void LinuxVolumes::addDisks(StorageFacts &facts, const MountEntry &mount, bool isFileEncrypted) const
{
    bool isEncrypted = true;
    const std::vector<dev_t> devices = devicesOf(mount);
    for (const dev_t device : devices) {
        const BlockDevices::Facts disk = m_devices.factsAbout(device);
        facts.isSolidState |= disk.isSolidState;
        facts.hasSnapshots |= disk.hasSnapshots;
        isEncrypted &= disk.isEncrypted;
    }
    isEncrypted &= !devices.empty();
    const bool isLeftOnDisk = facts.isSolidState || facts.isCopyOnWrite || facts.sharesBlocks || facts.hasSnapshots;
    facts.isUnencrypted = isLeftOnDisk && !isEncrypted && !isFileEncrypted;
}

std::vector<dev_t> LinuxVolumes::devicesOf(const MountEntry &mount) const
{
    if (major(mount.device) != 0) {
        return {mount.device};
    }
    // Such a file system names its devices as the source of the mount, bcachefs all of them and btrfs one.
    std::vector<dev_t> devices;
    for (const QByteArray &source : mount.source.split(':')) {
        struct stat status{};
        if (source.startsWith('/') && ::stat(source.constData(), &status) == 0 && S_ISBLK(status.st_mode)) {
            devices.push_back(status.st_rdev);
        }
    }
    return mount.type == "btrfs" && devices.size() == 1 ? m_devices.devicesOfBtrfs(devices.front()) : devices;
}

} // namespace quillhaven
