// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileError.h"
#include "platform/FileReader.h"
#include "platform/linux/files/ScopedFd.h"

#include <sys/stat.h>

namespace quillhaven {

/// Opens a regular file or a folder for reading, without waiting for the other end of a FIFO, and looks at it. Throws a
/// FileError with this action for anything else.
[[nodiscard]] ScopedFd openReadable(const QString &path, FileError::Action action, struct stat &status);

/// Reads a regular file, or what a link to one leads to.
class LinuxFileReader final : public FileReader
{
public:
    explicit LinuxFileReader(const QString &path);

    [[nodiscard]] size_t size() const override;
    [[nodiscard]] size_t read(uint64_t offset, std::span<std::byte> bytes) override;

private:
    QString m_path;
    ScopedFd m_file;
};

} // namespace quillhaven
