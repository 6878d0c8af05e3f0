// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>

namespace quillhaven {

/// A command as the value of the key Exec of a desktop entry, quoted after the Desktop Entry Specification 1.5, "The
/// Exec key". The escapes of the file itself are not part of it.
[[nodiscard]] QString execLine(const QStringList &command);

/// The command of such a value, without field codes such as "%U"; empty if the value is not a valid command.
[[nodiscard]] QStringList commandOfExecLine(const QString &line);

} // namespace quillhaven
