// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// A name, a path or a one-line text with names in it as it is shown to the user: on one line, and with nothing in it
/// that changes how the rest is read. A line break becomes "↵"; other control characters, direction marks and other
/// invisible characters become U+FFFD; and each component with characters from right to left is isolated, so
/// that it is written in its own direction and does not reorder its neighbours. A plain name stays as it is, and so
/// does a result of this function. For display only: the result may not name the file any more.
[[nodiscard]] QString displayName(const QString &name);

} // namespace quillhaven
