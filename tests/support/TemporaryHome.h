// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"

#include <QByteArray>
#include <QTemporaryDir>

namespace quillhaven::test {

/// The folders of a user with this home, as on a desktop.
[[nodiscard]] UserDirectories directoriesBelow(const QString &home);

/// A temporary home folder with the user's folders in it.
class TemporaryHome
{
public:
    TemporaryHome();

    [[nodiscard]] UserDirectories directories() const;
    [[nodiscard]] QString path(const QString &relative = {}) const;
    /// Writes a file below the home, creates its folders, and returns its path.
    QString write(const QString &relative, const QByteArray &bytes = "content") const;
    [[nodiscard]] static QByteArray read(const QString &path);
    [[nodiscard]] static bool exists(const QString &path);

private:
    QTemporaryDir m_directory;
};

} // namespace quillhaven::test
