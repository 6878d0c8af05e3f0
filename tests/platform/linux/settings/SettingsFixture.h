// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteUserDefaultsProvider.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>

namespace quillhaven::test {

inline const QString domainName = SqliteUserDefaultsProvider::standardDomain;

/// Records the keys whose changes the domain reports.
inline std::shared_ptr<QStringList> changesOf(UserDefaults &defaults)
{
    auto keys = std::make_shared<QStringList>();
    QObject::connect(&defaults, &UserDefaults::valueChanged, &defaults,
                     [keys](const QString &key) { keys->append(key); });
    return keys;
}

/// A folder with settings, and other programs that use it.
class SettingsFixture : public ::testing::Test
{
protected:
    [[nodiscard]] QString directory() const { return m_home.path(QStringLiteral("settings")); }
    [[nodiscard]] QString database() const
    {
        return directory() + QLatin1Char('/') + domainName + QStringLiteral(".db");
    }
    /// The names of the files that were set aside, including logs.
    [[nodiscard]] QStringList setAside(const QString &domain = domainName) const
    {
        return QDir(directory()).entryList({domain + QStringLiteral(".db.corrupt-*")}, QDir::Files);
    }
    /// Runs the writing process to its end, and returns its exit code.
    [[nodiscard]] int runWriter(const QStringList &arguments, const QString &domain = domainName) const
    {
        return QProcess::execute(QStringLiteral(SETTINGS_WRITER), QStringList{directory(), domain} + arguments);
    }
    /// Runs a statement on the database, as any other program could.
    [[nodiscard]] bool runSql(const QByteArray &sql) const
    {
        sqlite3 *connection = nullptr;
        const bool isDone = sqlite3_open(QFile::encodeName(database()).constData(), &connection) == SQLITE_OK &&
                            sqlite3_exec(connection, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
        sqlite3_close(connection);
        return isDone;
    }
    TemporaryHome m_home;
};

} // namespace quillhaven::test
