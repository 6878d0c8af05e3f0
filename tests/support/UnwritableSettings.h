// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteUserDefaultsProvider.h"

#include <QDir>

namespace quillhaven::test {

/// Keeps the program's settings from being written, for every user, as long as it lives: a folder is where SQLite needs
/// a file. The settings must not be open.
class UnwritableSettings
{
public:
    explicit UnwritableSettings(const QString &directory)
        : m_obstacle(SqliteUserDefaults::databasePath(directory, SqliteUserDefaultsProvider::standardDomain) +
                     QStringLiteral("-shm"))
    {
        QDir().mkpath(m_obstacle);
    }
    ~UnwritableSettings() { QDir().rmdir(m_obstacle); }
    UnwritableSettings(const UnwritableSettings &) = delete;
    UnwritableSettings &operator=(const UnwritableSettings &) = delete;

private:
    QString m_obstacle;
};

} // namespace quillhaven::test
