// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/SharedExtents.h"

#include "platform/linux/files/ScopedFd.h"

#include <array>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <linux/fiemap.h>
#include <linux/fs.h>
#include <span>
#include <sys/ioctl.h>

namespace quillhaven {

namespace {

constexpr int mostFiles = 20'000;

/// The answer to a question for the extents of a file, a few at a time: they follow the map in memory.
class ExtentMap
{
public:
    ExtentMap(int file, uint64_t start)
    {
        fiemap &map = *reinterpret_cast<fiemap *>(m_bytes.data());
        map.fm_start = start;
        map.fm_length = FIEMAP_MAX_OFFSET - start;
        map.fm_extent_count = room;
        m_count = ::ioctl(file, FS_IOC_FIEMAP, &map) == 0 ? map.fm_mapped_extents : 0;
    }

    [[nodiscard]] std::span<const fiemap_extent> extents() const
    {
        return {reinterpret_cast<const fiemap_extent *>(m_bytes.data() + sizeof(fiemap)), m_count};
    }

private:
    static constexpr size_t room = 128;

    alignas(fiemap) std::array<std::byte, sizeof(fiemap) + room * sizeof(fiemap_extent)> m_bytes{};
    size_t m_count = 0;
};

bool isFileShared(const char *path)
{
    const ScopedFd file(::open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    uint64_t start = 0;
    for (bool isMore = file.isOpen(); isMore;) {
        const ExtentMap map(file.get(), start);
        for (const fiemap_extent &extent : map.extents()) {
            if ((extent.fe_flags & FIEMAP_EXTENT_SHARED) != 0) {
                return true;
            }
            start = extent.fe_logical + extent.fe_length;
        }
        isMore = !map.extents().empty() && (map.extents().back().fe_flags & FIEMAP_EXTENT_LAST) == 0;
    }
    return false;
}

} // namespace

bool hasSharedExtents(const QByteArray &path)
{
    namespace fs = std::filesystem;
    std::error_code failure;
    const fs::path root(path.toStdString());
    if (fs::is_regular_file(fs::symlink_status(root, failure))) {
        return isFileShared(root.c_str());
    }
    if (!fs::is_directory(fs::symlink_status(root, failure))) {
        return false;
    }
    fs::recursive_directory_iterator entry(root, fs::directory_options::skip_permission_denied, failure);
    for (int files = 0; !failure && entry != fs::recursive_directory_iterator() && files < mostFiles; ++files) {
        std::error_code unknown; // such an entry is passed over
        if (fs::is_regular_file(entry->symlink_status(unknown)) && isFileShared(entry->path().c_str())) {
            return true;
        }
        entry.increment(failure);
    }
    return false;
}

} // namespace quillhaven
