// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>
#include <span>

namespace quillhaven {

/// The name of the file in a backup's own metadata, which is in clear and which anybody may have changed. Nothing
/// when there is none, or none that names a file in a folder.
[[nodiscard]] std::optional<QString> nameInMetadata(std::span<const std::byte> backup);

} // namespace quillhaven
