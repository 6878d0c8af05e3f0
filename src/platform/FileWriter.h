// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>

namespace quillhaven {

/// A file that is open to be written from its start to its end. Closes at the latest with this object. Every failing
/// call throws a FileError.
class FileWriter
{
public:
    FileWriter() = default;
    virtual ~FileWriter() = default;
    FileWriter(const FileWriter &) = delete;
    FileWriter &operator=(const FileWriter &) = delete;

    /// Appends all the bytes.
    virtual void write(std::span<const std::byte> bytes) = 0;
    /// Closes the file. Some file systems report only now that the bytes could not be written.
    virtual void close() = 0;
};

} // namespace quillhaven
