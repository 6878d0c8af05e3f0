// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QQmlEngine>

#include <memory>

namespace quillhaven {

class DisplayPreferences;

/// Creates the QML engine that all windows of the program share, with the program's style, colours and symbols, and
/// the look that the user wants. It must outlive the windows. The application object must exist.
[[nodiscard]] std::unique_ptr<QQmlEngine> makeWindowEngine(const DisplayPreferences &display);

} // namespace quillhaven
