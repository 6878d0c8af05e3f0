// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/FolderEntries.h"

#include "platform/linux/files/FilePaths.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace quillhaven {

bool readEntries(int folder, std::vector<QByteArray> &names)
{
    ScopedFd own(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    DIR *stream = own.isOpen() ? fdopendir(own.get()) : nullptr;
    if (stream == nullptr) {
        return false;
    }
    (void)own.release(); // The stream closes it.
    errno = 0;
    while (const dirent *entry = readdir(stream)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    const int error = errno;
    closedir(stream);
    errno = error;
    std::ranges::sort(names);
    return error == 0;
}

ScopedFd openWithoutAccessTime(int folder, const QByteArray &name, int flags)
{
    const int all = flags | O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    ScopedFd fd(openat(folder, name.constData(), all | O_NOATIME));
    if (!fd.isOpen() && errno == EPERM) {
        fd = ScopedFd(openat(folder, name.constData(), all));
    }
    return fd;
}

bool syncParentFolders(const QByteArray &path, const QByteArray &other)
{
    bool isSynced = true;
    const auto sync = [&isSynced](const QByteArray &folder) {
        const ScopedFd fd(open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (fd.isOpen() && fsync(fd.get()) != 0) {
            isSynced = isSynced && errno != EIO && errno != ENOSPC && errno != EDQUOT;
        }
    };
    sync(parentOf(path));
    if (!other.isEmpty() && parentOf(other) != parentOf(path)) {
        sync(parentOf(other));
    }
    return isSynced;
}

} // namespace quillhaven
