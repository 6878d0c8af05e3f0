// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "presentation/tokens/ColorTokens.h"

namespace quillhaven {

/// The dark scheme for those who need more contrast. On every surface a text has a contrast of at least 7:1 and a mark,
/// a border or a focus ring one of at least 3:1, by the formula of WCAG 2.1.
[[nodiscard]] ColorTokens highContrastTokens();

} // namespace quillhaven
