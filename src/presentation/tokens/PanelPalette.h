// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/ColorTokens.h"

#include <QPalette>

namespace quillhaven {

/// The window's colours for the panels, which are widgets.
[[nodiscard]] QPalette panelPalette(const ColorTokens &tokens);

} // namespace quillhaven
