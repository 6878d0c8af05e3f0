// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/LinuxFileManager.h"

#include "platform/linux/files/DirectoryWalk.h"
#include "platform/linux/files/DiscardableItems.h"
#include "platform/linux/files/FileMoves.h"
#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/LinuxFileHandle.h"
#include "platform/linux/files/ReadWholeFile.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/ScopedFd.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <optional>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

/// The bytes of a path without slashes at its end, where the kernel would follow a link.
QByteArray callName(const QString &path, Action action)
{
    QByteArray name = encodedPath(path, action);
    while (name.size() > 1 && name.endsWith('/')) {
        name.chop(1);
    }
    return name;
}

std::optional<struct stat> statusBehindLinks(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status{};
    if (path.contains(QChar(u'\0')) || stat(name.constData(), &status) != 0) {
        return std::nullopt;
    }
    return status;
}

/// Opens for reading without waiting for the other end of a FIFO. Throws unless a regular file, or where allowed a
/// folder, stands there.
ScopedFd openReadable(const QString &path, const QByteArray &name, Action action, struct stat &status)
{
    if (stat(name.constData(), &status) != 0) {
        const bool isUnnamable = errno == ENOENT && hasReplacementCharacter(path);
        throw isUnnamable ? FileError::of(Kind::InvalidName, action, path) : FileError::fromErrno(errno, action, path);
    }
    // A device may act when it is opened, so the type is asked before and again afterwards.
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        throw FileError::of(Kind::NotAFileOrFolder, action, path);
    }
    ScopedFd file(open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        throw FileError::fromErrno(errno, action, path);
    }
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
        throw FileError::of(Kind::NotAFileOrFolder, action, path);
    }
    return file;
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

/// Opens the file to be written, which a link of this user's own may name. A link of somebody else's is not followed:
/// in a folder shared with others it would send the bytes over any file of this user.
ScopedFd openForWriting(const QString &path, QByteArray name)
{
    constexpr int mostLinks = 40;
    constexpr mode_t everybody = 0666;
    for (int links = 0; links < mostLinks; ++links) {
        ScopedFd file(
            open(name.constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, everybody));
        if (file.isOpen() || errno != ELOOP) {
            return file;
        }
        const ScopedFd link(open(name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status{};
        QByteArray target(PATH_MAX, '\0');
        if (!link.isOpen() || fstat(link.get(), &status) != 0) {
            return {};
        }
        const ssize_t size = readlinkat(link.get(), "", target.data(), static_cast<size_t>(target.size()));
        if (size < 0) {
            return {};
        }
        if (status.st_uid != geteuid()) {
            throw FileError::of(Kind::NoPermission, Action::Write, path);
        }
        target.truncate(size);
        name = target.startsWith('/') ? target : parentOf(name) + '/' + target;
    }
    errno = ELOOP;
    return {};
}

} // namespace

bool LinuxFileManager::fileExists(const QString &path) const
{
    QByteArray name;
    try {
        name = callName(path, Action::Read);
    } catch (const FileError &) {
        return false; // No file can have such a name.
    }
    struct stat status{};
    if (stat(name.constData(), &status) == 0) {
        return true;
    }
    // A disk that does not answer is no proof of absence: whoever goes on meets its error, and takes nothing for gone.
    return errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != ENAMETOOLONG;
}

bool LinuxFileManager::isDirectory(const QString &path) const
{
    const std::optional<struct stat> status = statusBehindLinks(path);
    return status.has_value() && S_ISDIR(status->st_mode);
}

std::optional<FileIdentity> LinuxFileManager::identityOfItem(const QString &path, Links links) const
{
    QByteArray name;
    try {
        name = callName(path, Action::Read);
    } catch (const FileError &) {
        return std::nullopt; // dropped: no file can have such a name
    }
    struct stat status{};
    const int flags = links == Links::Keep ? AT_SYMLINK_NOFOLLOW : 0;
    if (fstatat(AT_FDCWD, name.constData(), &status, flags) != 0) {
        return std::nullopt;
    }
    return FileIdentity{.device = status.st_dev,
                        .inode = status.st_ino,
                        .hasOtherNames = !S_ISDIR(status.st_mode) && status.st_nlink > 1};
}

bool LinuxFileManager::isWritableFile(const QString &path) const
{
    const QByteArray name = QFile::encodeName(path);
    return !path.contains(QChar(u'\0')) && faccessat(AT_FDCWD, name.constData(), W_OK, AT_EACCESS) == 0;
}

void LinuxFileManager::requireReadableAndMovable(const QString &path, size_t headroom) const
{
    const QByteArray name = callName(path, Action::Use);
    struct stat status{};
    const ScopedFd file = openReadable(path, name, Action::Use, status);
    requireAbsoluteIfLink(path, name);
    requireMovableOutOfItsFolder(path, name);
    if (S_ISREG(status.st_mode) && !FileBuffer::fits(static_cast<size_t>(status.st_size) + headroom)) {
        throw FileError::of(Kind::TooLargeForMemory, Action::Use, path);
    }
}

QStringList LinuxFileManager::contentsOfDirectory(const QString &path) const
{
    const QByteArray name = callName(path, Action::List);
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(opendir(name.constData()), closedir);
    if (!stream) {
        throw FileError::fromErrno(errno, Action::List, path);
    }
    QStringList names;
    errno = 0;
    while (const dirent *entry = readdir(stream.get())) {
        const QString entryName = QFile::decodeName(entry->d_name);
        const bool isOwn = entryName == QLatin1String(".") || entryName == QLatin1String("..");
        if (!isOwn) {
            names.append(entryName);
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
    const QByteArray name = callName(path, Action::CreateFolder);
    for (qsizetype slash = name.indexOf('/', 1); slash >= 0; slash = name.indexOf('/', slash + 1)) {
        mkdir(name.left(slash).constData(), ownerOnly); // The last one tells whether those above stand.
    }
    if (mkdir(name.constData(), ownerOnly) != 0 && !(errno == EEXIST && isDirectory(path))) {
        throw FileError::fromErrno(errno, Action::CreateFolder, path);
    }
}

void LinuxFileManager::moveItem(const QString &source, const QString &target)
{
    const MoveNames names{Action::Move, source, target};
    moveTo(callName(source, Action::Move), callName(target, Action::Move), names);
}

void LinuxFileManager::replaceItemAt(const QString &original, const QString &replacement)
{
    const MoveNames names{Action::Replace, original, {}};
    putInPlaceOf(callName(original, Action::Replace), callName(replacement, Action::Replace), names);
}

void LinuxFileManager::renameItem(const QString &path, const QString &newPath)
{
    if (const int error = renameWithoutReplacing(callName(path, Action::Move), callName(newPath, Action::Move))) {
        throw FileError::fromErrno(error, Action::Move, path, newPath);
    }
}

void LinuxFileManager::copyItem(const QString &source, const QString &target)
{
    const MoveNames names{Action::Copy, source, target};
    copyTo(callName(source, Action::Copy), callName(target, Action::Copy), names);
}

void LinuxFileManager::removeItem(const QString &path)
{
    removeTree(callName(path, Action::Remove));
}

void LinuxFileManager::discardAbandonedItems(const QString &folder)
{
    quillhaven::discardAbandonedItems(encodedPath(folder, Action::Remove));
}

FileBuffer LinuxFileManager::readFile(const QString &path, size_t headroom, size_t tailroom,
                                      ReadListener &listener) const
{
    const QByteArray name = callName(path, Action::Read);
    struct stat status{};
    const ScopedFd file = openReadable(path, name, Action::Read, status);
    if (!S_ISREG(status.st_mode)) {
        throw FileError::fromErrno(EISDIR, Action::Read, path);
    }
    return readWholeFile(file.get(), path, headroom, tailroom, listener);
}

void LinuxFileManager::writeFile(const QString &path, std::span<const std::byte> bytes, const FinalBytes &finalBytes)
{
    ScopedFd file = openForWriting(path, encodedPath(path, Action::Write));
    struct stat status{};
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        throw FileError::fromErrno(errno, Action::Write, path);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError::of(Kind::NotAFileOrFolder, Action::Write, path);
    }
    // An empty file is left alone: ext4 takes any truncation for a replacement and waits for the disk at the close.
    if (status.st_size != 0 && ftruncate(file.get(), 0) != 0) {
        throw FileError::fromErrno(errno, Action::Write, path);
    }
    constexpr size_t longestWrite = size_t(8) << 20; // so that `finalBytes` hears of the progress
    for (size_t done = 0; done < bytes.size();) {
        const std::span<const std::byte> final = bytes.first(finalBytes(done)).subspan(done);
        const ssize_t count = write(file.get(), final.data(), std::min(final.size(), longestWrite));
        if (count < 0 && errno != EINTR) {
            throw FileError::fromErrno(errno, Action::Write, path);
        }
        done += static_cast<size_t>(std::max<ssize_t>(count, 0));
    }
    if (close(file.release()) != 0 && errno != EINTR) { // a network volume or a quota may tell only now
        throw FileError::fromErrno(errno, Action::Write, path);
    }
}

int64_t LinuxFileManager::sizeOfItem(const QString &path) const
{
    const QByteArray name = callName(path, Action::Read);
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        throw FileError::fromErrno(errno, Action::Read, path);
    }
    return status.st_size;
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
