// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// A fresh hidden name in the folder of `path`, for what stands elsewhere as a whole: a copy that is not in its place
/// yet, or what something else has replaced. It tells the machine and the process.
[[nodiscard]] QByteArray discardableNameBeside(const QByteArray &path);

/// Discards what processes of this machine left in a folder under such names when they were ended: it may be a readable
/// copy of something that shall be out of sight. What cannot be read or removed stays; the latter is logged.
void discardAbandonedItems(const QByteArray &folder) noexcept;

/// The same, unless this process has asked for that folder already: nothing more is left there while it goes on.
void discardAbandonedItemsOnce(const QByteArray &folder);

} // namespace quillhaven
