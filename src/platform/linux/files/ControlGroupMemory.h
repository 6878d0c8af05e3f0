// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <cstddef>
#include <optional>

namespace quillhaven {

/// The memory in bytes that this process may still take by the limits of its control group (cgroup v2) and of those
/// above it; nothing without a limit. Files in the cache count as free, since they give way. `membership` is the file
/// that names the group, below the folder `root`.
[[nodiscard]] std::optional<size_t>
memoryLeftInControlGroups(const QString &membership = QStringLiteral("/proc/self/cgroup"),
                          const QString &root = QStringLiteral("/sys/fs/cgroup"));

} // namespace quillhaven
