// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/linux/files/ScopedFd.h"

#include <array>

namespace quillhaven {

/// Overwrites a regular file past the page cache where the file system allows it, which reaches the device in the
/// fewest steps; otherwise through the cache, with a flush of each write.
class LinuxFileHandle final : public FileHandle
{
public:
    /// Throws for a link and for what is no regular file, before anything happens to it.
    explicit LinuxFileHandle(const QString &path);

    void seek(uint64_t offset) override { m_offset = offset; }
    void writeThrough(std::span<const std::byte> bytes) override;
    void synchronizeFile() override;
    void closeFile() override;

private:
    static constexpr size_t blockSize = 4096;
    static constexpr size_t stretchSize = 65536;

    [[noreturn]] void fail(int errorNumber) const;
    void writeStretch(std::span<const std::byte> bytes);
    [[nodiscard]] bool setDirect(bool isWanted);

    QString m_path;
    ScopedFd m_file;
    uint64_t m_offset = 0;
    bool m_isDirect = false;
    bool m_allowsDirect = true;
    bool m_knowsFlushingWrites = true;
    bool m_hasUnflushed = false;
    alignas(blockSize) std::array<std::byte, stretchSize> m_stretch{};
};

} // namespace quillhaven
