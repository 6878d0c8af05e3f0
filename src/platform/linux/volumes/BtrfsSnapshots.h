// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// Whether there is a snapshot of the subvolume that the path lies in, directly in this subvolume or in the one at the
/// mount point. Others cannot be found without special rights.
[[nodiscard]] bool hasBtrfsSnapshots(const QByteArray &path, const QByteArray &mountPoint);

} // namespace quillhaven
