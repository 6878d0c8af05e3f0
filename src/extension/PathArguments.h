// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayList>

#include <optional>

namespace quillhaven {

// Paths are bytes here: a file manager passes names in any encoding, and a name that was decoded and encoded again may
// be that of another file.

/// The absolute path that an argument of a file manager names, which is a path or a file URI (RFC 8089); without a
/// slash at its end. Nothing for another URI, or for one that names another machine.
[[nodiscard]] std::optional<QByteArray> pathOfArgument(const QByteArray &argument);

/// The paths of the arguments. Those that name no file of this machine are left out.
[[nodiscard]] QByteArrayList pathsOfArguments(const QByteArrayList &arguments);

} // namespace quillhaven
