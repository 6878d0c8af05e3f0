// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/RemoveTree.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/ScopedFd.h"
#include "support/printLogger.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace quillhaven {

namespace {

[[noreturn]] void fail(int error, const QByteArray &path)
{
    throw FileError::fromErrno(error, FileError::Action::Remove, QFile::decodeName(path));
}

/// Opens a folder below `parent` and lists it; `path` is for the error. A link or another volume is not entered.
ScopedFd enter(int parent, const QByteArray &name, const QByteArray &path, dev_t volume, std::vector<QByteArray> &names)
{
    ScopedFd folder(openat(parent, name.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    if (!folder.isOpen() || fstat(folder.get(), &status) != 0) {
        fail(errno, path);
    }
    if (status.st_dev != volume) {
        fail(EBUSY, path);
    }
    if (!readEntries(folder.get(), names)) {
        fail(errno, path);
    }
    return folder;
}

void removeEntry(int parent, const QByteArray &name, const QByteArray &path, dev_t volume)
{
    if (unlinkat(parent, name.constData(), 0) == 0) {
        return;
    }
    const int error = errno;
    struct stat status{};
    if (fstatat(parent, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISDIR(status.st_mode)) {
        fail(error, path);
    }
    // An empty folder goes without being readable.
    if (unlinkat(parent, name.constData(), AT_REMOVEDIR) == 0) {
        return;
    }
    std::vector<QByteArray> names;
    {
        const ScopedFd folder = enter(parent, name, path, volume, names);
        for (const QByteArray &child : names) {
            removeEntry(folder.get(), child, path + '/' + child, volume);
        }
    }
    if (unlinkat(parent, name.constData(), AT_REMOVEDIR) != 0) {
        fail(errno, path);
    }
}

/// Whether entries of this folder that belong to `owner` may be taken out of it.
bool mayTakeOut(int folder, uid_t owner)
{
    struct stat status{};
    if (fstat(folder, &status) != 0) {
        return false;
    }
    if ((status.st_mode & S_ISVTX) == 0) {
        return true;
    }
    const uid_t self = geteuid();
    return self == 0 || self == status.st_uid || self == owner;
}

void checkEntry(int parent, const QByteArray &name, const QByteArray &path, dev_t volume)
{
    struct stat status{};
    if (fstatat(parent, name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        fail(errno, path);
    }
    if (!mayTakeOut(parent, status.st_uid)) {
        fail(EACCES, path);
    }
    if (!S_ISDIR(status.st_mode)) {
        return;
    }
    std::vector<QByteArray> names;
    const ScopedFd folder = enter(parent, name, path, volume, names);
    if (names.empty()) {
        return;
    }
    if (faccessat(folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        fail(errno, path + '/' + names.front());
    }
    for (const QByteArray &child : names) {
        checkEntry(folder.get(), child, path + '/' + child, volume);
    }
}

using EntryAction = void (*)(int, const QByteArray &, const QByteArray &, dev_t);

void onEntry(const QByteArray &path, EntryAction action)
{
    struct stat status{};
    if (lstat(path.constData(), &status) != 0) {
        fail(errno, path);
    }
    const ScopedFd parent(open(parentOf(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!parent.isOpen()) {
        fail(errno, path);
    }
    QByteArray trimmed = path;
    while (trimmed.size() > 1 && trimmed.endsWith('/')) {
        trimmed.chop(1);
    }
    action(parent.get(), trimmed.mid(trimmed.lastIndexOf('/') + 1), trimmed, status.st_dev);
}

} // namespace

void removeTree(const QByteArray &path)
{
    onEntry(path, removeEntry);
}

void discardTree(const QByteArray &path) noexcept
{
    constexpr int attempts = 2;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        try {
            removeTree(path);
            return;
        } catch (const FileError &error) {
            if (error.kind() == FileError::Kind::NoSuchFile) {
                return;
            }
            if (attempt == attempts) {
                printLogger(error.errorDescription());
            }
        }
    }
}

void requireRemovable(const QByteArray &path)
{
    const QByteArray parent = parentOf(path);
    if (faccessat(AT_FDCWD, parent.constData(), W_OK | X_OK, AT_EACCESS) != 0) {
        fail(errno, path);
    }
    onEntry(path, checkEntry);
}

} // namespace quillhaven
