// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileWriter.h"
#include "platform/linux/files/ScopedFd.h"

#include <QString>

namespace quillhaven {

/// Writes a regular file in place: makes it, or empties the one that exists.
class LinuxFileWriter final : public FileWriter
{
public:
    enum class Existing { Empty, Refuse };

    /// Follows a link of this user's own, unless an existing file is refused. A link of another user is not followed:
    /// in a folder shared with others it could send the bytes to any file of this user. A file of this user that others
    /// may read is closed to them.
    LinuxFileWriter(const QString &path, Existing existing);

    void write(std::span<const std::byte> bytes) override;
    void close() override;

private:
    [[noreturn]] void fail(int errorNumber) const;

    QString m_path;
    ScopedFd m_file;
};

} // namespace quillhaven
