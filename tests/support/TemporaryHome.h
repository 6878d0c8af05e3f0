// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/UserDirectories.h"

#include <QByteArray>
#include <QTemporaryDir>

namespace quillhaven::testing {

/// The places of a user whose home is this folder, as a desktop has them.
[[nodiscard]] UserDirectories directoriesBelow(const QString &home);

/// A home folder of one test's own, with the user's places in it, gone afterwards.
class TemporaryHome
{
public:
    TemporaryHome();

    [[nodiscard]] UserDirectories directories() const;
    [[nodiscard]] QString path(const QString &relative = {}) const;
    /// Writes a file below the home, making the folders above it, and returns its path.
    QString write(const QString &relative, const QByteArray &bytes = "content") const;
    [[nodiscard]] static QByteArray read(const QString &path);
    [[nodiscard]] static bool exists(const QString &path);

private:
    QTemporaryDir m_directory;
};

} // namespace quillhaven::testing
