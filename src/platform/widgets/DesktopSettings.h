// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStringList>
#include <QUrl>

#include <functional>

namespace quillhaven {

/// The command that opens the page of the desktop's own settings for an address of the scheme
/// "x-apple.systempreferences": the programs that start at login. Empty if the desktop has no such page, or if its
/// program is not installed. `desktops` are the names in XDG_CURRENT_DESKTOP.
[[nodiscard]] QStringList desktopSettingsCommand(const QUrl &address, const QStringList &desktops,
                                                 const std::function<bool(const QString &)> &isInstalled);

} // namespace quillhaven
