// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <sys/types.h>

#include <vector>

namespace quillhaven {

/// The way from a folder down to one below it, of any depth. Only the last few folders are held open. The way back up
/// leads over ".." and is checked, so that moving a folder meanwhile does not lead it elsewhere.
class FolderDescent
{
public:
    explicit FolderDescent(ScopedFd top);

    /// The current folder, for the calls that take one.
    [[nodiscard]] int folder() const { return m_levels.back().fd.get(); }
    /// Goes down into a folder that was opened in the current one. False with errno set when that failed; the current
    /// folder is then as it was.
    [[nodiscard]] bool enter(ScopedFd folder);
    /// Goes back to the folder above. False with errno set when the way up does not lead back there.
    [[nodiscard]] bool leave();

private:
    struct Level
    {
        ScopedFd fd;
        dev_t device = 0; ///< with the inode: set when the folder is closed
        ino_t inode = 0;
    };

    [[nodiscard]] static bool close(Level &level);

    std::vector<Level> m_levels;
};

} // namespace quillhaven
