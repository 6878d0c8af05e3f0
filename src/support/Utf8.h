// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace quillhaven {

/// The text of UTF-8 bytes; nothing when they are not valid UTF-8. A byte order mark is a character like any other.
[[nodiscard]] std::optional<QString> decodedUtf8(QByteArrayView bytes);

} // namespace quillhaven
