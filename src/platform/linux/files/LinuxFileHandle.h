// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"
#include "platform/FileHandle.h"
#include "platform/linux/files/ScopedFd.h"

#include <array>

namespace quillhaven {

/// Overwrites a regular file directly on the device, without the page cache, where the file system allows it: that
/// takes the fewest steps. Elsewhere it writes through the cache and flushes each write.
class LinuxFileHandle final : public FileHandle
{
public:
    /// Throws for a link and for anything that is no regular file, before anything happens to it.
    explicit LinuxFileHandle(const QString &path);

    void seek(uint64_t offset) override { m_offset = offset; }
    void writeThrough(std::span<const std::byte> bytes) override;
    void synchronizeFile() override;
    void closeFile() override;

private:
    static constexpr size_t blockSize = 4096;
    static constexpr size_t maxPiece = 65536;

    [[noreturn]] void fail(int errorNumber) const;
    void writePiece(std::span<const std::byte> bytes);
    [[nodiscard]] bool setDirect(bool isWanted);

    QString m_path;
    ScopedFd m_file;
    uint64_t m_offset = 0;
    bool m_isDirect = false;
    bool m_allowsDirect = true;
    bool m_knowsFlushingWrites = true;
    bool m_hasUnflushed = false;
    alignas(blockSize) std::array<std::byte, maxPiece> m_piece{};
};

} // namespace quillhaven
