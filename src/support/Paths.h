// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileInfo>
#include <QString>

namespace quillhaven {

/// The name after the last slash of an absolute path.
[[nodiscard]] inline QString lastPathComponent(const QString &path)
{
    return QFileInfo(path).fileName();
}

/// The path of the folder that holds the item.
[[nodiscard]] inline QString parentDirectory(const QString &path)
{
    return QFileInfo(path).path();
}

/// A name below a folder.
[[nodiscard]] inline QString pathInDirectory(const QString &directory, const QString &name)
{
    return directory + QLatin1Char('/') + name;
}

} // namespace quillhaven
