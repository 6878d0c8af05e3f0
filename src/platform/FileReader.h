// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace quillhaven {

/// A regular file that is open for reading. Closes with this object. Every failing call throws a FileError.
class FileReader
{
public:
    FileReader() = default;
    virtual ~FileReader() = default;
    FileReader(const FileReader &) = delete;
    FileReader &operator=(const FileReader &) = delete;

    /// The size in bytes now. Somebody else may be writing to the file.
    [[nodiscard]] virtual size_t size() const = 0;
    /// Reads up to as many bytes as `bytes` has room for, from `offset` on. Returns how many; 0 at the end of the file.
    [[nodiscard]] virtual size_t read(uint64_t offset, std::span<std::byte> bytes) = 0;
};

} // namespace quillhaven
