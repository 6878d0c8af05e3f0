// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/ReadWholeFile.h"

#include "platform/FileError.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

FileBuffer bufferFor(const QString &path, size_t fileSize, size_t headroom, size_t tailroom)
{
    size_t size = 0;
    const bool isTooLarge = __builtin_add_overflow(headroom, fileSize, &size) ||
                            __builtin_add_overflow(size, tailroom, &size) || !FileBuffer::fits(size);
    if (!isTooLarge) {
        try {
            return FileBuffer(size);
        } catch (const std::bad_alloc &) { // NOLINT(bugprone-empty-catch): the same answer as an estimate that says no
        }
    }
    throw FileError::of(Kind::TooLargeForMemory, Action::Read, path);
}

/// Reads what one call gives; 0 at the end of the file.
size_t readSome(int file, std::span<std::byte> bytes, size_t position, const QString &path)
{
    for (;;) {
        const ssize_t count = pread(file, bytes.data(), bytes.size(), static_cast<off_t>(position));
        if (count >= 0) {
            return static_cast<size_t>(count);
        }
        if (errno != EINTR) {
            throw FileError::fromErrno(errno, Action::Read, path);
        }
    }
}

/// Reads until `bytes` is full or the file ends; the number of bytes read.
size_t readUntilEnd(int file, std::span<std::byte> bytes, size_t position, const QString &path, ReadListener &listener)
{
    constexpr size_t stretch = size_t(4) << 20;
    size_t done = 0;
    while (done < bytes.size()) {
        const size_t count =
            readSome(file, bytes.subspan(done, std::min(stretch, bytes.size() - done)), position + done, path);
        if (count == 0) {
            break;
        }
        done += count;
        listener.arrived(done);
    }
    return done;
}

/// Tells the listener that the buffer goes away, unless it is kept.
class Watched
{
public:
    Watched(ReadListener &listener, std::span<std::byte> buffer) : m_listener(listener) { listener.began(buffer); }
    ~Watched()
    {
        if (!m_kept) {
            m_listener.abandoned();
        }
    }
    Watched(const Watched &) = delete;
    Watched &operator=(const Watched &) = delete;

    void keep() { m_kept = true; }

private:
    ReadListener &m_listener;
    bool m_kept = false;
};

} // namespace

FileBuffer readWholeFile(int file, const QString &path, size_t headroom, size_t tailroom, ReadListener &listener)
{
    posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
    // Somebody may write to the file meanwhile: the buffer holds exactly what one pass from start to end read.
    constexpr int attempts = 5;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        struct stat status{};
        if (fstat(file, &status) != 0) {
            throw FileError::fromErrno(errno, Action::Read, path);
        }
        const auto size = static_cast<size_t>(status.st_size);
        FileBuffer buffer = bufferFor(path, size, headroom, tailroom);
        Watched watched(listener, buffer.bytes());
        std::byte further{};
        if (readUntilEnd(file, buffer.bytes().subspan(headroom, size), 0, path, listener) == size &&
            readSome(file, std::span(&further, 1), size, path) == 0) {
            watched.keep();
            return buffer;
        }
    }
    throw FileError::fromErrno(EBUSY, Action::Read, path);
}

} // namespace quillhaven
