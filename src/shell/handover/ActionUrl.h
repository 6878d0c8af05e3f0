// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace quillhaven {

/// An action that another program asks for.
struct ActionUrl
{
    QString action;
    QString path; ///< absolute, without slashes at its end

    bool operator==(const ActionUrl &) const = default;
};

/// Reads an address such as quillhaven://lock?path=/home/a.txt. The path is decoded twice: a path with a percent sign
/// arrives whole only if the sender has encoded it twice. Nothing for another scheme (in exactly this spelling),
/// without a query item "path" with a value, or where the second decoding fails.
[[nodiscard]] std::optional<ActionUrl> parseActionUrl(const QString &url);

/// The path that an item of this path is known by: absolute, and without slashes at its end.
[[nodiscard]] QString filePath(const QString &path);

} // namespace quillhaven
