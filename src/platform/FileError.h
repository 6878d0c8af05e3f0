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
        OnlyALink,        ///< a symbolic link where the item itself is needed
        TooLargeForMemory,
        InvalidName,  ///< not valid UTF-8, or too long for the file system
        NotPreserved, ///< the copy on the other file system lacks something of the original
        Other,
    };
    enum class Action { Read, Write, Overwrite, Move, Copy, Replace, Remove, Trash, CreateFolder, List, Use };

    FileError(Kind kind, const QString &sentence) : LocalizedError(sentence), m_kind(kind) {}

    /// The error for a value of `errno`. `target` is the second path of a move or a replacement. Each platform defines
    /// this function, since the system knows the text of its error numbers.
    [[nodiscard]] static FileError fromErrno(int errorNumber, Action action, const QString &path,
                                             const QString &target = {});

    /// The error for a kind. `reason` completes the sentence of `Kind::Other`, and is not used otherwise.
    [[nodiscard]] static FileError of(Kind kind, Action action, const QString &path, const QString &target = {},
                                      const QString &reason = {});

    /// The same failure as a failure of what the caller does: with the verb "print" the sentence becomes
    /// "Could not print "a.txt" because it does not exist." A sentence that a caller wrote out stays as it is.
    [[nodiscard]] FileError withVerb(const QString &verb) const;

    [[nodiscard]] Kind kind() const { return m_kind; }

private:
    FileError(Kind kind, const QString &sentence, const QString &path, const QString &reason)
        : LocalizedError(sentence), m_kind(kind), m_path(path), m_reason(reason)
    {
    }

    Kind m_kind;
    QString m_path; ///< empty for a sentence that a caller wrote out
    QString m_reason;
};

} // namespace quillhaven
