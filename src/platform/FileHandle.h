// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillhaven {

/// A file that is open to be overwritten in place. It is never cut, and grows only if bytes are written past its end.
/// Closes at the latest with this object. Every failing call throws a FileError.
class FileHandle
{
public:
    FileHandle() = default;
    virtual ~FileHandle() = default;
    FileHandle(const FileHandle &) = delete;
    FileHandle &operator=(const FileHandle &) = delete;

    /// Sets the position of the next write, in bytes from the start of the file.
    virtual void seek(uint64_t offset) = 0;
    /// Writes all the bytes, and returns when the device holds them.
    virtual void writeThrough(std::span<const std::byte> bytes) = 0;
    /// Returns when the device holds all that was written.
    virtual void synchronizeFile() = 0;
    virtual void closeFile() = 0;
};

} // namespace quillhaven
