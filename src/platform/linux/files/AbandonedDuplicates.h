// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <array>
#include <atomic>

namespace quillhaven {

/// Removes the duplicates that processes of this machine left in a folder when they were ended: one may be a readable
/// copy of something that is to be out of sight. What cannot be read or removed stays; the latter is logged.
void discardAbandonedDuplicates(const QByteArray &folder) noexcept;

/// Remembers the folders of the last moves, in which a running process leaves nothing: a run over many items of one
/// folder lists it once. Any thread may call it.
class CleanedFolders
{
public:
    /// Discards what was abandoned in the folder, unless it was asked for recently.
    void clean(const QByteArray &folder);

private:
    std::array<std::atomic<size_t>, 64> m_hashes{};
    std::atomic<size_t> m_next = 0; ///< the slot of the next folder
};

} // namespace quillhaven
