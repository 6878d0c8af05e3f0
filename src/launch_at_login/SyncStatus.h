// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// Whether the user's setting and the system's registration agree.
enum class SyncStatus { synchronized, outOfSync, syncing, error, unknown };

/// The symbol of a status.
[[nodiscard]] QString iconName(SyncStatus status);
/// The name of its colour.
[[nodiscard]] QString statusColor(SyncStatus status);
/// Its words for the user.
[[nodiscard]] QString description(SyncStatus status);

} // namespace quillhaven
