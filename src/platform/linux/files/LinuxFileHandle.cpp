// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/LinuxFileHandle.h"

#include "platform/linux/files/FilePaths.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>

#include <algorithm>
#include <cerrno>

namespace quillhaven {

namespace {

constexpr auto action = FileError::Action::Overwrite;

} // namespace

LinuxFileHandle::LinuxFileHandle(const QString &path) : m_path(path)
{
    const QByteArray name = encodedPath(path, action);
    struct stat status{};
    if (lstat(name.constData(), &status) != 0) {
        fail(errno);
    }
    // Opening a device may make it act, so the type is checked before, and again afterwards.
    if (S_ISLNK(status.st_mode)) {
        throw FileError::of(FileError::Kind::OnlyALink, action, path);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError::of(FileError::Kind::NotAFileOrFolder, action, path);
    }
    m_file = ScopedFd(open(name.constData(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!m_file.isOpen() || fstat(m_file.get(), &status) != 0) {
        fail(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError::of(FileError::Kind::NotAFileOrFolder, action, path);
    }
}

void LinuxFileHandle::fail(int errorNumber) const
{
    throw FileError::fromErrno(errorNumber, action, m_path);
}

bool LinuxFileHandle::setDirect(bool isWanted)
{
    if (isWanted != m_isDirect) {
        const int flags = fcntl(m_file.get(), F_GETFL);
        if (flags < 0 || fcntl(m_file.get(), F_SETFL, isWanted ? flags | O_DIRECT : flags & ~O_DIRECT) != 0) {
            return false;
        }
        m_isDirect = isWanted;
    }
    return true;
}

void LinuxFileHandle::writeThrough(std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(bytes.size(), maxPiece));
        writePiece(piece);
        bytes = bytes.subspan(piece.size());
    }
}

void LinuxFileHandle::writePiece(std::span<const std::byte> bytes)
{
    std::ranges::copy(bytes, m_piece.begin());
    for (size_t done = 0; done < bytes.size();) {
        const size_t rest = bytes.size() - done;
        const bool isWholeBlocks = m_offset % blockSize == 0 && rest % blockSize == 0 && done % blockSize == 0;
        m_allowsDirect = m_allowsDirect && (!isWholeBlocks || setDirect(true));
        if (!(m_allowsDirect && isWholeBlocks) && !setDirect(false)) {
            fail(errno);
        }
        const iovec piece{m_piece.data() + done, rest};
        const ssize_t count = m_knowsFlushingWrites
                                  ? pwritev2(m_file.get(), &piece, 1, static_cast<off_t>(m_offset), RWF_DSYNC)
                                  : pwrite(m_file.get(), piece.iov_base, rest, static_cast<off_t>(m_offset));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 && errno == EINVAL && m_isDirect) {
            m_allowsDirect = false; // larger blocks than usual
            continue;
        }
        if (count < 0 && (errno == EOPNOTSUPP || errno == ENOSYS) && m_knowsFlushingWrites) {
            m_knowsFlushingWrites = false;
            continue;
        }
        if (count <= 0) {
            fail(count == 0 ? EIO : errno);
        }
        if (!m_knowsFlushingWrites) {
            m_hasUnflushed = true;
            synchronizeFile();
        }
        done += static_cast<size_t>(count);
        m_offset += static_cast<uint64_t>(count);
    }
}

void LinuxFileHandle::synchronizeFile()
{
    // Another call would make the device flush its cache again for nothing.
    if (!m_hasUnflushed) {
        return;
    }
    while (fdatasync(m_file.get()) != 0) {
        if (errno != EINTR) {
            fail(errno);
        }
    }
    m_hasUnflushed = false;
}

void LinuxFileHandle::closeFile()
{
    if (m_file.isOpen() && close(m_file.release()) != 0 && errno != EINTR) {
        fail(errno);
    }
}

} // namespace quillhaven
