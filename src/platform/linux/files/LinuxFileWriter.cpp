// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/LinuxFileWriter.h"

#include "platform/linux/files/FilePaths.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <climits>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

constexpr mode_t ownerOnly = 0600;

/// What the link at `name` leads to; empty with errno set when it cannot be read. `path` is for the error.
QByteArray ownLinkTarget(const QString &path, const QByteArray &name)
{
    const ScopedFd link(open(name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat status{};
    if (!link.isOpen() || fstat(link.get(), &status) != 0) {
        return {};
    }
    QByteArray target(PATH_MAX, '\0');
    const ssize_t size = readlinkat(link.get(), "", target.data(), static_cast<size_t>(target.size()));
    if (size < 0) {
        return {};
    }
    if (status.st_uid != geteuid()) {
        throw FileError::of(Kind::NoPermission, Action::Write, path);
    }
    target.truncate(size);
    return target.startsWith('/') ? target : parentOf(name) + '/' + target;
}

/// The file at the path, or at the end of this user's own links; not open, with errno set, when it cannot be opened.
ScopedFd openFollowingOwnLinks(const QString &path)
{
    constexpr int maxLinks = 40; // as the kernel
    QByteArray name = encodedPath(path, Action::Write);
    for (int links = 0; links < maxLinks; ++links) {
        ScopedFd file(
            open(name.constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, ownerOnly));
        if (file.isOpen() || errno != ELOOP) {
            return file;
        }
        name = ownLinkTarget(path, name);
        if (name.isEmpty()) {
            return {};
        }
    }
    errno = ELOOP;
    return {};
}

ScopedFd createNew(const QString &path)
{
    const QByteArray name = encodedPath(path, Action::Write);
    return ScopedFd(open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnly));
}

} // namespace

LinuxFileWriter::LinuxFileWriter(const QString &path, Existing existing)
    : m_path(path), m_file(existing == Existing::Refuse ? createNew(path) : openFollowingOwnLinks(path))
{
    struct stat status{};
    if (!m_file.isOpen() || fstat(m_file.get(), &status) != 0) {
        fail(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError::of(Kind::NotAFileOrFolder, Action::Write, path);
    }
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    if ((status.st_mode & others) != 0 && status.st_uid == geteuid()) {
        (void)fchmod(m_file.get(), status.st_mode & ~others & ALLPERMS); // Some volumes have no modes.
    }
    // An empty file is left alone: ext4 mistakes any truncation for a replacement and waits for the disk at the close.
    if (status.st_size != 0 && ftruncate(m_file.get(), 0) != 0) {
        fail(errno);
    }
}

void LinuxFileWriter::fail(int errorNumber) const
{
    throw FileError::fromErrno(errorNumber, Action::Write, m_path);
}

void LinuxFileWriter::write(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_file.get(), bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            fail(errno);
        }
        bytes = bytes.subspan(count > 0 ? static_cast<size_t>(count) : 0);
    }
}

void LinuxFileWriter::close()
{
    if (::close(m_file.release()) != 0 && errno != EINTR) {
        fail(errno);
    }
}

} // namespace quillhaven
