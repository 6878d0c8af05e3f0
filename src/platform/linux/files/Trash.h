// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

namespace quillhaven {

/// Moves an item to the trash of its volume (freedesktop.org Trash Specification). Throws a FileError that names
/// `path`; `name` is the same in bytes.
void moveToTrash(const QString &path, const QByteArray &name);

} // namespace quillhaven
