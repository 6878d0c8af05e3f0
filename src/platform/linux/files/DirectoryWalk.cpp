// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/DirectoryWalk.h"

#include "platform/linux/files/FilePaths.h"

#include <fcntl.h>
#include <fts.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace quillhaven {

namespace {

constexpr auto action = FileError::Action::List;

int byName(const FTSENT **a, const FTSENT **b)
{
    return std::strcmp((*a)->fts_name, (*b)->fts_name);
}

[[noreturn]] void fail(int errorNumber, const FTSENT &entry)
{
    const bool isFolder = entry.fts_info == FTS_D || entry.fts_info == FTS_DNR;
    throw FileError::fromErrno(errorNumber, isFolder ? action : FileError::Action::Read, decodedPath(entry.fts_path));
}

/// Whether something else is mounted over the entry: another volume, or a folder or file of the same one, which has the
/// same device number.
bool isMountPoint(const FTSENT &entry, dev_t volume)
{
    struct statx status{};
    if (entry.fts_statp->st_dev != volume) {
        return true;
    }
    return statx(AT_FDCWD, entry.fts_accpath, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, 0, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

void requireFolder(const QByteArray &name, const QString &folder)
{
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        throw FileError::fromErrno(errno, action, folder);
    }
    if (S_ISLNK(status.st_mode)) {
        throw FileError::of(FileError::Kind::OnlyALink, action, folder);
    }
    if (!S_ISDIR(status.st_mode)) {
        throw FileError::fromErrno(ENOTDIR, action, folder);
    }
}

} // namespace

QList<FileEntry> walkRegularFiles(const QString &folder)
{
    QByteArray name = encodedItemPath(folder, action);
    requireFolder(name, folder);
    const std::array<char *, 2> roots{name.data(), nullptr};
    const std::unique_ptr<FTS, int (*)(FTS *)> walk(
        fts_open(roots.data(), FTS_PHYSICAL | FTS_NOCHDIR | FTS_XDEV, byName), fts_close);
    if (!walk) {
        throw FileError::fromErrno(errno, action, folder);
    }
    QList<FileEntry> files;
    dev_t volume = 0;
    errno = 0;
    while (const FTSENT *entry = fts_read(walk.get())) {
        const bool isRoot = entry->fts_level == FTS_ROOTLEVEL;
        switch (entry->fts_info) {
        case FTS_D:
            if (isRoot) {
                volume = entry->fts_statp->st_dev;
            } else if (isMountPoint(*entry, volume)) {
                fail(EBUSY, *entry);
            }
            break;
        case FTS_DNR:
            if (!isRoot) {
                fail(entry->fts_errno, *entry);
            }
            break;
        case FTS_ERR:
        case FTS_NS:
            fail(entry->fts_errno, *entry);
        case FTS_F:
            if (isMountPoint(*entry, volume)) {
                fail(EBUSY, *entry);
            }
            files.append({decodedPath(entry->fts_path), static_cast<int64_t>(entry->fts_statp->st_size)});
            break;
        default:
            break;
        }
        errno = 0;
    }
    if (errno != 0) {
        throw FileError::fromErrno(errno, action, folder);
    }
    return files;
}

} // namespace quillhaven
