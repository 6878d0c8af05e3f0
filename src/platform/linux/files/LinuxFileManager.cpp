// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/LinuxFileManager.h"

#include "platform/linux/files/AbandonedDuplicates.h"
#include "platform/linux/files/DirectoryWalk.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/LinuxFileHandle.h"
#include "platform/linux/files/LinuxFileReader.h"
#include "platform/linux/files/LinuxFileWriter.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/ScopedFd.h"
#include "platform/linux/files/Trash.h"
#include "platform/linux/files/TreeComparison.h"
#include "support/Calls.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

/// The bytes of a path; nothing for one that no file can have.
std::optional<QByteArray> possiblePath(const QString &path)
{
    try {
        return encodedItemPath(path, Action::Read);
    } catch (const FileError &) {
        return std::nullopt; // dropped
    }
}

void requireAbsoluteIfLink(const QString &path, const QByteArray &name)
{
    char first = '/';
    if (readlink(name.constData(), &first, 1) == 1 && first != '/') {
        throw FileError::of(Kind::OnlyALink, Action::Use, path);
    }
}

void requireMovableOutOfItsFolder(const QString &path, const QByteArray &name)
{
    const QByteArray parent = parentOf(name);
    struct stat item{};
    struct stat folder{};
    if (faccessat(AT_FDCWD, parent.constData(), W_OK | X_OK, AT_EACCESS) != 0 || lstat(name.constData(), &item) != 0 ||
        stat(parent.constData(), &folder) != 0) {
        throw FileError::fromErrno(errno, Action::Use, path);
    }
    const uid_t self = geteuid();
    const bool isKeptBySticky =
        (folder.st_mode & S_ISVTX) != 0 && self != 0 && self != item.st_uid && self != folder.st_uid;
    // The kernel rewrites the ".." of a folder that moves, so it must be writable itself.
    const bool isFixedFolder = S_ISDIR(item.st_mode) && faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) != 0;
    if (isKeptBySticky || isFixedFolder) {
        throw FileError::of(Kind::NoPermission, Action::Use, path);
    }
    if (S_ISDIR(item.st_mode) && item.st_dev != folder.st_dev) {
        throw FileError::fromErrno(EBUSY, Action::Use, path); // a volume is mounted here
    }
}

} // namespace

bool LinuxFileManager::fileExists(const QString &path) const
{
    const std::optional<QByteArray> name = possiblePath(path);
    struct stat status{};
    if (!name) {
        return false;
    }
    if (stat(name->constData(), &status) == 0) {
        return true;
    }
    // An I/O error does not prove that the file is missing. It is reported as present, and the caller's next call fails
    // with that error.
    return errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != ENAMETOOLONG;
}

bool LinuxFileManager::isDirectory(const QString &path) const
{
    const std::optional<QByteArray> name = possiblePath(path);
    struct stat status{};
    return name && stat(name->constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::optional<FileIdentity> LinuxFileManager::identityOfItem(const QString &path, Links links) const
{
    const std::optional<QByteArray> name = possiblePath(path);
    struct stat status{};
    const int flags = links == Links::Keep ? AT_SYMLINK_NOFOLLOW : 0;
    if (!name || fstatat(AT_FDCWD, name->constData(), &status, flags) != 0) {
        return std::nullopt;
    }
    return FileIdentity{.device = status.st_dev,
                        .inode = status.st_ino,
                        .hasOtherNames = !S_ISDIR(status.st_mode) && status.st_nlink > 1};
}

QString LinuxFileManager::resolvedPath(const QString &path) const
{
    const std::optional<QByteArray> name = possiblePath(path);
    const std::unique_ptr<char, Calls<std::free>> resolved(name ? realpath(name->constData(), nullptr) : nullptr);
    return resolved ? decodedPath(resolved.get()) : path;
}

bool LinuxFileManager::isWritableFile(const QString &path) const
{
    const std::optional<QByteArray> name = possiblePath(path);
    return name && faccessat(AT_FDCWD, name->constData(), W_OK, AT_EACCESS) == 0;
}

void LinuxFileManager::requireReadableAndMovable(const QString &path, size_t headroom) const
{
    const QByteArray name = encodedItemPath(path, Action::Use);
    struct stat status{};
    const ScopedFd file = openReadable(path, Action::Use, status);
    requireAbsoluteIfLink(path, name);
    requireMovableOutOfItsFolder(path, name);
    if (S_ISREG(status.st_mode) && !FileBuffer::fits(static_cast<size_t>(status.st_size) + headroom)) {
        throw FileError::of(Kind::TooLargeForMemory, Action::Use, path);
    }
}

QStringList LinuxFileManager::contentsOfDirectory(const QString &path) const
{
    const QByteArray name = encodedItemPath(path, Action::List);
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(opendir(name.constData()), closedir);
    if (!stream) {
        throw FileError::fromErrno(errno, Action::List, path);
    }
    QStringList names;
    errno = 0;
    while (const dirent *entry = readdir(stream.get())) {
        const QByteArray entryName(entry->d_name);
        if (entryName != "." && entryName != "..") {
            names.append(decodedPath(entryName));
        }
        errno = 0;
    }
    if (errno != 0) {
        throw FileError::fromErrno(errno, Action::List, path);
    }
    return names;
}

void LinuxFileManager::createDirectory(const QString &path)
{
    constexpr mode_t ownerOnly = 0700; // as the XDG base directories are made
    const QByteArray name = encodedItemPath(path, Action::CreateFolder);
    for (qsizetype slash = name.indexOf('/', 1); slash >= 0; slash = name.indexOf('/', slash + 1)) {
        mkdir(name.left(slash).constData(), ownerOnly); // If one of these fails, so does the last.
    }
    if (mkdir(name.constData(), ownerOnly) != 0 && (errno != EEXIST || !isDirectory(path))) {
        throw FileError::fromErrno(errno, Action::CreateFolder, path);
    }
}

void LinuxFileManager::moveItem(const QString &source, const QString &target)
{
    const MoveNames names{Action::Move, source, target};
    m_moves.move(encodedItemPath(source, Action::Move), encodedItemPath(target, Action::Move), names);
}

void LinuxFileManager::replaceItemAt(const QString &original, const QString &replacement)
{
    const MoveNames names{Action::Replace, original, {}};
    m_moves.replace(encodedItemPath(original, Action::Replace), encodedItemPath(replacement, Action::Replace), names);
}

void LinuxFileManager::renameItem(const QString &path, const QString &newPath)
{
    if (const int error =
            renameWithoutReplacing(encodedItemPath(path, Action::Move), encodedItemPath(newPath, Action::Move))) {
        throw FileError::fromErrno(error, Action::Move, path, newPath);
    }
}

void LinuxFileManager::copyItem(const QString &source, const QString &target)
{
    const MoveNames names{Action::Copy, source, target};
    m_moves.copy(encodedItemPath(source, Action::Copy), encodedItemPath(target, Action::Copy), names);
}

void LinuxFileManager::removeItem(const QString &path)
{
    removeTree(encodedItemPath(path, Action::Remove));
}

void LinuxFileManager::trashItem(const QString &path)
{
    moveToTrash(path, encodedItemPath(path, Action::Trash));
}

void LinuxFileManager::discardAbandonedItems(const QString &folder)
{
    discardAbandonedDuplicates(encodedPath(folder, Action::Remove));
}

std::unique_ptr<FileReader> LinuxFileManager::openForReading(const QString &path) const
{
    return std::make_unique<LinuxFileReader>(path);
}

std::unique_ptr<FileWriter> LinuxFileManager::openForWriting(const QString &path)
{
    return std::make_unique<LinuxFileWriter>(path, LinuxFileWriter::Existing::Empty);
}

std::unique_ptr<FileWriter> LinuxFileManager::createForWriting(const QString &path)
{
    return std::make_unique<LinuxFileWriter>(path, LinuxFileWriter::Existing::Refuse);
}

int64_t LinuxFileManager::sizeOfItem(const QString &path) const
{
    const QByteArray name = encodedItemPath(path, Action::Read);
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        throw FileError::fromErrno(errno, Action::Read, path);
    }
    return status.st_size;
}

QDateTime LinuxFileManager::modificationDateOfItem(const QString &path) const
{
    const QByteArray name = encodedItemPath(path, Action::Read);
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        throw FileError::fromErrno(errno, Action::Read, path);
    }
    constexpr qint64 millisecondsPerSecond = 1000;
    constexpr qint64 nanosecondsPerMillisecond = 1000000;
    return QDateTime::fromMSecsSinceEpoch(status.st_mtim.tv_sec * millisecondsPerSecond +
                                          status.st_mtim.tv_nsec / nanosecondsPerMillisecond);
}

bool LinuxFileManager::contentsEqual(const QString &path, const QString &other) const
{
    try {
        requireSameTree(encodedItemPath(path, Action::Read), encodedItemPath(other, Action::Read), other);
        return true;
    } catch (const FileError &) {
        return false; // dropped
    }
}

int64_t LinuxFileManager::availableSpace(const QString &path) const
{
    const QByteArray name = encodedItemPath(path, Action::Use);
    struct statvfs volume{};
    if (statvfs(name.constData(), &volume) != 0) {
        throw FileError::fromErrno(errno, Action::Use, path);
    }
    const auto blocks = geteuid() == 0 ? volume.f_bfree : volume.f_bavail; // A part is kept for the administrator.
    return static_cast<int64_t>(blocks) * static_cast<int64_t>(volume.f_frsize);
}

QList<FileEntry> LinuxFileManager::regularFilesBelow(const QString &folder) const
{
    return walkRegularFiles(folder);
}

std::unique_ptr<FileHandle> LinuxFileManager::openForOverwriting(const QString &path)
{
    return std::make_unique<LinuxFileHandle>(path);
}

void LinuxFileManager::sync()
{
    ::sync();
}

} // namespace quillhaven
