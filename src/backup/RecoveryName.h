// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>
#include <span>

namespace quillhaven {

/// The file name in a backup's metadata, which is neither encrypted nor authenticated. Nothing if there is none or if
/// it is not the name of a file in a folder.
[[nodiscard]] std::optional<QString> nameInMetadata(std::span<const std::byte> backup);

} // namespace quillhaven
