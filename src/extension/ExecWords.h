// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

// How a path is written in the files of the menus.

namespace quillhaven {

/// One word of a command line whose reader knows the quoting of a shell and field codes such as %F: the Exec key of the
/// Desktop Entry Specification.
[[nodiscard]] QByteArray execWord(const QByteArray &text);

/// A string in a key file of the Desktop Entry Specification.
[[nodiscard]] QByteArray keyFileValue(QByteArray text);

/// The inside of a bytes literal of Python.
[[nodiscard]] QByteArray pythonBytes(const QByteArray &bytes);

} // namespace quillhaven
