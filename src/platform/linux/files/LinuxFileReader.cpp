// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/LinuxFileReader.h"

#include "platform/linux/files/FilePaths.h"

#include <fcntl.h>

#include <cerrno>

namespace quillhaven {

namespace {

constexpr auto readAction = FileError::Action::Read;

bool isFileOrFolder(const struct stat &status)
{
    return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

} // namespace

ScopedFd openReadable(const QString &path, FileError::Action action, struct stat &status)
{
    using Kind = FileError::Kind;
    const QByteArray name = encodedItemPath(path, action);
    if (stat(name.constData(), &status) != 0) {
        const bool isUnnamable = errno == ENOENT && hasReplacementCharacter(path);
        throw isUnnamable ? FileError::of(Kind::InvalidName, action, path) : FileError::fromErrno(errno, action, path);
    }
    // Opening a device may make it act, so the type is checked before, and again afterwards.
    if (!isFileOrFolder(status)) {
        throw FileError::of(Kind::NotAFileOrFolder, action, path);
    }
    ScopedFd file(open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!file.isOpen() || fstat(file.get(), &status) != 0) {
        throw FileError::fromErrno(errno, action, path);
    }
    if (!isFileOrFolder(status)) {
        throw FileError::of(Kind::NotAFileOrFolder, action, path);
    }
    return file;
}

LinuxFileReader::LinuxFileReader(const QString &path) : m_path(path)
{
    struct stat status{};
    m_file = openReadable(path, readAction, status);
    if (!S_ISREG(status.st_mode)) {
        throw FileError::fromErrno(EISDIR, readAction, path);
    }
    posix_fadvise(m_file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
}

size_t LinuxFileReader::size() const
{
    struct stat status{};
    if (fstat(m_file.get(), &status) != 0) {
        throw FileError::fromErrno(errno, readAction, m_path);
    }
    return static_cast<size_t>(status.st_size);
}

size_t LinuxFileReader::read(uint64_t offset, std::span<std::byte> bytes)
{
    for (;;) {
        const ssize_t count = pread(m_file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (count >= 0) {
            return static_cast<size_t>(count);
        }
        if (errno != EINTR) {
            throw FileError::fromErrno(errno, readAction, m_path);
        }
    }
}

} // namespace quillhaven
