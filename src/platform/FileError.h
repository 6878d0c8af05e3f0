// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/LocalizedError.h"

namespace quillhaven {

/// A failure of a file operation: what was tried, on which file, and why it did not work.
class FileError : public LocalizedError
{
public:
    enum class Kind {
        NoSuchFile,
        NoPermission,
        TargetExists,
        NoSpace,
        ReadOnlyVolume,
        NotAFileOrFolder, ///< a FIFO, a socket, a device
        TooLargeForMemory,
        InvalidName,  ///< not valid UTF-8, or too long for the file system
        NotPreserved, ///< the copy on the other file system lacks something of the original
        Other,
    };
    enum class Action { Read, Write, Overwrite, Move, Copy, Replace, Remove, CreateFolder, List, Protect };

    FileError(Kind kind, const QString &sentence) : LocalizedError(sentence), m_kind(kind) {}

    /// The error for an `errno` value. `target` is the second path of a move or a replacement.
    [[nodiscard]] static FileError fromErrno(int errorNumber, Action action, const QString &path,
                                             const QString &target = {});

    /// The error for a kind that no system call reported.
    [[nodiscard]] static FileError of(Kind kind, Action action, const QString &path, const QString &target = {});

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

} // namespace quillhaven
