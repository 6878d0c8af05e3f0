// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <sys/types.h>

namespace quillhaven {

/// A line of `/proc/self/mountinfo`: proc(5).
struct MountEntry
{
    dev_t device = 0;      ///< has the major number 0 where the file system has no device of its own
    QByteArray mountPoint; ///< an absolute path
    QByteArray type;       ///< such as "ext4" or "fuse.sshfs"
    QByteArray source;     ///< in the file system's own form, often the path of a device

    bool operator==(const MountEntry &) const = default;
};

/// The entry with this number, which statx gives for a file as `stx_mnt_id`, in the text of the file.
[[nodiscard]] std::optional<MountEntry> findMount(const QByteArray &mountinfo, uint64_t id);

} // namespace quillhaven
