// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "catalogue/ProtectedItem.h"

namespace quillhaven::finder_row {

// The texts and symbols of a row of the list.

/// The symbol of a file, chosen by its name alone.
[[nodiscard]] QString fileIcon(const QString &originalName);
/// The symbol in front of the row.
[[nodiscard]] QString leadingIcon(const ProtectedItem &item);
/// The folder of an item, with "~" for the home folder, and without its middle if it has more than 40 characters.
[[nodiscard]] QString shortenedPath(const QString &originalPath, const QString &homePath);

[[nodiscard]] QString statusText(const ProtectedItem &item);
/// The text of the button that locks or unlocks the item.
[[nodiscard]] QString toggleLockText(const ProtectedItem &item);
[[nodiscard]] QString toggleLockIcon(const ProtectedItem &item);
/// What a screen reader reads out for the row.
[[nodiscard]] QString accessibleText(const ProtectedItem &item);

} // namespace quillhaven::finder_row
