// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// Whether a program keeps a folder in step with other places that is at this path or above it. Syncthing, Nextcloud
/// and ownCloud, Dropbox and Resilio Sync leave a mark in theirs; the entries of the folder `known` are such folders
/// too, or links to them. The path is absolute and has no links above its last component.
[[nodiscard]] bool isSynced(const QString &path, const QString &known);

} // namespace quillhaven
