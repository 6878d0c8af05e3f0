// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// Whether another file has blocks of this file, or of a regular file below this folder, as after a copy that the file
/// system makes without copying. It follows no links, passes over what cannot be read, and looks at 20,000 files at
/// most.
[[nodiscard]] bool hasSharedExtents(const QByteArray &path);

} // namespace quillhaven
