// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFileInfo>
#include <QString>

namespace quillhaven {

/// The path without slashes at its end, which name the same item. The root keeps its own.
[[nodiscard]] inline QString withoutTrailingSlashes(QString path)
{
    while (path.size() > 1 && path.endsWith(QLatin1Char('/'))) {
        path.chop(1);
    }
    return path;
}

/// The name of the item at an absolute path; empty for the root.
[[nodiscard]] inline QString lastPathComponent(const QString &path)
{
    return QFileInfo(withoutTrailingSlashes(path)).fileName();
}

/// The path of the folder that holds the item; the root for the root.
[[nodiscard]] inline QString parentDirectory(const QString &path)
{
    return withoutTrailingSlashes(QFileInfo(withoutTrailingSlashes(path)).path());
}

/// A name below a folder.
[[nodiscard]] inline QString pathInDirectory(const QString &directory, const QString &name)
{
    return directory + QLatin1Char('/') + name;
}

} // namespace quillhaven
