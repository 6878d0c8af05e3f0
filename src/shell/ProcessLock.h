// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <QString>

namespace quillhaven {

/// A lock file that one process holds for as long as it runs. The kernel releases it when the holder ends for any
/// reason, see flock(2).
class ProcessLock
{
public:
    /// The file is made in the first of the two folders in which that is possible: `fallback` serves where nothing can
    /// be written to `directory`. Both are private folders of the user.
    ProcessLock(const QString &directory, const QString &fallback);

    /// False when another process holds the lock. Throws a FileError when the file cannot be opened in either folder:
    /// two processes would overwrite each other's records, so none must start without the lock.
    [[nodiscard]] bool take();
    /// Lets the processes that wait for the lock know that it will be free soon. The holder alone calls it.
    void announceEnd() const;
    /// Whether the holder has announced its end.
    [[nodiscard]] bool isEnding() const;

private:
    [[nodiscard]] ScopedFd open() const;

    QString m_path;
    QString m_fallbackPath;
    ScopedFd m_file;
};

} // namespace quillhaven
