// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/RemoveTree.h"

#include "platform/linux/files/FilePaths.h"
#include "platform/linux/files/TreeWalk.h"
#include "support/printLogger.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace quillhaven {

namespace {

[[noreturn]] void fail(int error, const QByteArray &path)
{
    throw FileError::fromErrno(error, FileError::Action::Remove, decodedPath(path));
}

dev_t volumeOf(const QByteArray &path)
{
    struct stat status{};
    if (lstat(path.constData(), &status) != 0) {
        fail(errno, path);
    }
    return status.st_dev;
}

/// Enters no other volume.
class OneVolumeVisitor : public TreeVisitor
{
public:
    explicit OneVolumeVisitor(dev_t volume) : m_volume(volume) {}

    void entered(const TreeEntry &entry, int folder, const std::vector<QByteArray> & /*names*/) override
    {
        struct stat status{};
        if (fstat(folder, &status) != 0) {
            fail(errno, entry.path);
        }
        if (status.st_dev != m_volume) {
            fail(EBUSY, entry.path);
        }
    }

private:
    dev_t m_volume;
};

bool isOwn(int folder)
{
    struct stat status{};
    return fstat(folder, &status) == 0 && status.st_uid == geteuid();
}

class Removal final : public OneVolumeVisitor
{
public:
    Removal(dev_t volume, ReadOnlyFolders readOnlyFolders)
        : OneVolumeVisitor(volume), m_opensReadOnlyFolders(readOnlyFolders == ReadOnlyFolders::Open)
    {
    }

    void entered(const TreeEntry &entry, int folder, const std::vector<QByteArray> &names) override
    {
        OneVolumeVisitor::entered(entry, folder, names);
        if (m_opensReadOnlyFolders && !names.empty() && faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) != 0 &&
            isOwn(folder)) {
            (void)fchmod(folder, S_IRWXU); // If it fails, so does the next removal.
        }
    }

    [[nodiscard]] bool visit(const TreeEntry &entry) override
    {
        if (unlinkat(entry.folder, entry.name.constData(), 0) == 0) {
            return false;
        }
        const int error = errno;
        struct stat status{};
        if (fstatat(entry.folder, entry.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
            !S_ISDIR(status.st_mode)) {
            fail(error, entry.path);
        }
        // An empty folder can be removed even if it cannot be read.
        return unlinkat(entry.folder, entry.name.constData(), AT_REMOVEDIR) != 0;
    }

    void left(const TreeEntry &entry) override
    {
        if (unlinkat(entry.folder, entry.name.constData(), AT_REMOVEDIR) != 0) {
            fail(errno, entry.path);
        }
    }

private:
    bool m_opensReadOnlyFolders;
};

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

class RemovalCheck final : public OneVolumeVisitor
{
public:
    using OneVolumeVisitor::OneVolumeVisitor;

    [[nodiscard]] bool visit(const TreeEntry &entry) override
    {
        struct stat status{};
        if (fstatat(entry.folder, entry.name.constData(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            fail(errno, entry.path);
        }
        if (!mayTakeOut(entry.folder, status.st_uid)) {
            fail(EACCES, entry.path);
        }
        return S_ISDIR(status.st_mode);
    }

    void entered(const TreeEntry &entry, int folder, const std::vector<QByteArray> &names) override
    {
        OneVolumeVisitor::entered(entry, folder, names);
        if (!names.empty() && faccessat(folder, ".", W_OK | X_OK, AT_EACCESS) != 0 && !isOwn(folder)) {
            fail(errno, entry.path + '/' + names.front());
        }
    }

    void left(const TreeEntry & /*entry*/) override {}
};

template <typename Visitor, typename... Arguments>
void walk(const QByteArray &path, Arguments... arguments)
{
    const QByteArray trimmed = withoutTrailingSlashes(path);
    Visitor visitor(volumeOf(trimmed), arguments...);
    walkTree(trimmed, FileError::Action::Remove, visitor);
}

} // namespace

void removeTree(const QByteArray &path, ReadOnlyFolders readOnlyFolders)
{
    walk<Removal>(path, readOnlyFolders);
}

void discardTree(const QByteArray &path) noexcept
{
    constexpr int attempts = 2;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        try {
            removeTree(path, ReadOnlyFolders::Open);
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
    walk<RemovalCheck>(path);
}

} // namespace quillhaven
