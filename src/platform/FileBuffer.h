// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>

namespace quillhaven {

/// Zero-filled memory for one large run of bytes, mapped so that huge pages back it. Movable, not copyable.
class FileBuffer
{
public:
    FileBuffer() = default;
    /// Maps `size` bytes. Throws std::bad_alloc when the system cannot give them; use `FileBuffer::fits` to ask first.
    explicit FileBuffer(size_t size);
    ~FileBuffer();
    FileBuffer(FileBuffer &&other) noexcept;
    FileBuffer &operator=(FileBuffer &&other) noexcept;
    FileBuffer(const FileBuffer &) = delete;
    FileBuffer &operator=(const FileBuffer &) = delete;

    /// Whether `size` bytes of memory are available now, by the system's own estimate.
    [[nodiscard]] static bool fits(size_t size);

    [[nodiscard]] size_t size() const { return m_size; }
    [[nodiscard]] std::span<std::byte> bytes() { return {m_data, m_size}; }
    [[nodiscard]] std::span<const std::byte> bytes() const { return {m_data, m_size}; }

    /// Gives the memory of the first `count` bytes, in whole huge pages, back to the system; the bytes are lost. So the
    /// bytes need not be in memory twice while they are written to a file: here and in the file's pages.
    void release(size_t count);

private:
    void *m_mapping = nullptr;
    size_t m_mappedSize = 0;
    std::byte *m_data = nullptr; ///< within the mapping, where a huge page begins
    size_t m_size = 0;
    size_t m_releasedSize = 0;
};

} // namespace quillhaven
