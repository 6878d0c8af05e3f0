// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

namespace quillhaven {

/// A fresh hidden name in the folder of `path` for the only copy of something. Nothing ever removes what has such a
/// name unasked.
[[nodiscard]] QByteArray hiddenNameForOriginal(const QByteArray &path);

/// A fresh hidden name in the folder of `path` for a duplicate: a copy that is not in its place yet, or what something
/// else has replaced. It names the machine and the process, so that what a process leaves behind when it is ended is
/// recognized and removed later.
[[nodiscard]] QByteArray hiddenNameForDuplicate(const QByteArray &path);

/// Whether a process of this machine that has ended made the name by `hiddenNameForDuplicate`. `name` is the last
/// component alone.
[[nodiscard]] bool isAbandonedDuplicate(const QByteArray &name);

} // namespace quillhaven
