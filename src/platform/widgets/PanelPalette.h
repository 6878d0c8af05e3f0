// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPalette>

namespace quillhaven {

/// The window's dark colours for the panels, which are widgets.
[[nodiscard]] QPalette panelPalette();

} // namespace quillhaven
