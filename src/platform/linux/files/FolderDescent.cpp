// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FolderDescent.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace quillhaven {

namespace {

/// At least two: ".." of a folder that may be read but not searched cannot be reached. Nothing below such a folder can
/// be entered, so that the folder above it is always among the last two.
constexpr size_t maxOpenFolders = 16;

} // namespace

FolderDescent::FolderDescent(ScopedFd top)
{
    m_levels.push_back({std::move(top)});
}

bool FolderDescent::enter(ScopedFd folder)
{
    if (m_levels.size() >= maxOpenFolders && !close(m_levels.at(m_levels.size() - maxOpenFolders))) {
        return false;
    }
    m_levels.push_back({std::move(folder)});
    return true;
}

bool FolderDescent::close(Level &level)
{
    if (!level.fd.isOpen()) {
        return true;
    }
    struct stat status{};
    if (fstat(level.fd.get(), &status) != 0) {
        return false;
    }
    level.device = status.st_dev;
    level.inode = status.st_ino;
    level.fd = ScopedFd();
    return true;
}

bool FolderDescent::leave()
{
    const ScopedFd left = std::move(m_levels.back().fd);
    m_levels.pop_back();
    Level &level = m_levels.back();
    if (level.fd.isOpen()) {
        return true;
    }
    level.fd = ScopedFd(openat(left.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status{};
    if (!level.fd.isOpen() || fstat(level.fd.get(), &status) != 0) {
        return false;
    }
    if (status.st_dev != level.device || status.st_ino != level.inode) {
        errno = EBUSY;
        return false;
    }
    return true;
}

} // namespace quillhaven
