// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillhaven {

/// The value of a variable in a file of the format os-release(5): assignments of the shell, one a line, the last one
/// counts. Nothing when there is none or its quotes do not end.
[[nodiscard]] std::optional<QString> osReleaseValue(const QByteArray &file, const QByteArray &name);

} // namespace quillhaven
