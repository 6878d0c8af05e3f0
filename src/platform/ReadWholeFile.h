// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileBuffer.h"
#include "platform/FileReader.h"

#include <QString>

namespace quillhaven {

/// Is called on the reading thread while a file is read into memory.
class ReadListener
{
public:
    ReadListener() = default;
    virtual ~ReadListener() = default;
    ReadListener(const ReadListener &) = delete;
    ReadListener &operator=(const ReadListener &) = delete;

    /// Reading begins, into this memory with its headroom and tailroom. It may begin again after `abandoned`.
    virtual void began(std::span<std::byte> buffer) = 0;
    /// The first `count` bytes of the file are in the buffer and will not change.
    virtual void arrived(size_t count) = 0;
    /// The memory is about to be freed: nothing may use it after this call has returned.
    virtual void abandoned() = 0;
};

/// Reads a whole file to `headroom` bytes after the start of a buffer of `headroom` + file size + `tailroom` bytes. The
/// buffer holds what one pass from start to end read: a file that changes its size meanwhile is read again, and of one
/// that keeps growing the last pass counts. `path` is for the sentence of an error. Throws a FileError,
/// `TooLargeForMemory` before anything that cannot fit is read.
[[nodiscard]] FileBuffer readWholeFile(FileReader &reader, const QString &path, size_t headroom, size_t tailroom,
                                       ReadListener &listener);

/// The same without a listener.
[[nodiscard]] FileBuffer readWholeFile(FileReader &reader, const QString &path, size_t headroom = 0,
                                       size_t tailroom = 0);

} // namespace quillhaven
