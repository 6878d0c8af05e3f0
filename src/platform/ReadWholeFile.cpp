// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ReadWholeFile.h"

#include "platform/FileError.h"

#include <algorithm>
#include <cerrno>
#include <new>

namespace quillhaven {

namespace {

class NoReadListener final : public ReadListener
{
public:
    void began(std::span<std::byte> /*buffer*/) override {}
    void arrived(size_t /*count*/) override {}
    void abandoned() override {}
};

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
    throw FileError::of(FileError::Kind::TooLargeForMemory, FileError::Action::Read, path);
}

/// Reads until `bytes` is full or the file ends; the number of bytes read.
size_t readUntilEnd(FileReader &reader, std::span<std::byte> bytes, ReadListener &listener)
{
    constexpr size_t maxRead = size_t(4) << 20; // so that the listener can work on what has arrived
    size_t done = 0;
    while (done < bytes.size()) {
        const size_t count = reader.read(done, bytes.subspan(done, std::min(maxRead, bytes.size() - done)));
        if (count == 0) {
            break;
        }
        done += count;
        listener.arrived(done);
    }
    return done;
}

/// Announces a buffer to the listener and, unless it is kept, its end.
class AnnouncedBuffer
{
public:
    AnnouncedBuffer(ReadListener &listener, std::span<std::byte> buffer) : m_listener(listener)
    {
        listener.began(buffer);
    }
    ~AnnouncedBuffer()
    {
        if (!m_isKept) {
            m_listener.abandoned();
        }
    }
    AnnouncedBuffer(const AnnouncedBuffer &) = delete;
    AnnouncedBuffer &operator=(const AnnouncedBuffer &) = delete;

    void keep() { m_isKept = true; }

private:
    ReadListener &m_listener;
    bool m_isKept = false;
};

} // namespace

FileBuffer readWholeFile(FileReader &reader, const QString &path, size_t headroom, size_t tailroom,
                         ReadListener &listener)
{
    constexpr int attempts = 5;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        const size_t size = reader.size();
        FileBuffer buffer = bufferFor(path, size, headroom, tailroom);
        AnnouncedBuffer announced(listener, buffer.bytes());
        std::byte further{};
        const bool isRead = readUntilEnd(reader, buffer.bytes().subspan(headroom, size), listener) == size;
        const bool isAll = isRead && reader.read(size, std::span(&further, 1)) == 0;
        // A log or a download may not stop: then this is what it held when the pass began.
        if (isAll || (isRead && attempt == attempts && reader.size() > size)) {
            announced.keep();
            return buffer;
        }
    }
    throw FileError::fromErrno(EBUSY, FileError::Action::Read, path);
}

FileBuffer readWholeFile(FileReader &reader, const QString &path, size_t headroom, size_t tailroom)
{
    NoReadListener listener;
    return readWholeFile(reader, path, headroom, tailroom, listener);
}

} // namespace quillhaven
