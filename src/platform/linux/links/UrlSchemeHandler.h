// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/WatchedSources.h"
#include "platform/linux/login/EntryFolders.h"

namespace quillhaven {

/// Lets the desktop open links of this scheme with the program: writes the user's desktop entry unless the system or
/// the user has one that starts an existing program, and makes the program the scheme's handler unless another one is.
/// Returns what is so now, in a sentence for the user. Blocks; any thread may call it, one at a time. Never throws.
[[nodiscard]] WatchedSources::State registerUrlScheme(const EntryFolders &applications, const QString &scheme);

} // namespace quillhaven
