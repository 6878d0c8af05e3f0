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
    /// Follows a link of this user's own. A link of another user is not followed: in a folder shared with others it
    /// could send the bytes to any file of this user.
    explicit LinuxFileWriter(const QString &path);

    void write(std::span<const std::byte> bytes) override;
    void close() override;

private:
    [[noreturn]] void fail(int errorNumber) const;

    QString m_path;
    ScopedFd m_file;
};

} // namespace quillhaven
