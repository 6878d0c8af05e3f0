// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/settings/SqliteUserDefaults.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>

namespace quillhaven::testing {

inline const QString domainName = SqliteUserDefaultsProvider::standardDomain;

/// The keys whose change the domain reports from now on.
inline std::shared_ptr<QStringList> changesOf(UserDefaults &defaults)
{
    auto keys = std::make_shared<QStringList>();
    QObject::connect(&defaults, &UserDefaults::valueChanged, &defaults,
                     [keys](const QString &key) { keys->append(key); });
    return keys;
}

/// A folder of settings, and other programs that use it.
class SettingsFixture : public ::testing::Test
{
protected:
    [[nodiscard]] QString directory() const { return m_home.path(QStringLiteral("settings")); }
    [[nodiscard]] QString database() const
    {
        return directory() + QLatin1Char('/') + domainName + QStringLiteral(".db");
    }
    [[nodiscard]] QStringList setAside() const
    {
        return QDir(directory()).entryList({domainName + QStringLiteral(".db.corrupt-*")}, QDir::Files);
    }
    /// Runs the writing process to its end and returns its exit code.
    [[nodiscard]] int runWriter(const QStringList &arguments) const
    {
        return QProcess::execute(QStringLiteral(SETTINGS_WRITER), QStringList{directory(), domainName} + arguments);
    }
    /// Runs a statement on the database as any other program would.
    [[nodiscard]] bool runSql(const QByteArray &sql) const
    {
        sqlite3 *connection = nullptr;
        const bool isDone = sqlite3_open(QFile::encodeName(database()).constData(), &connection) == SQLITE_OK &&
                            sqlite3_exec(connection, sql.constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
        sqlite3_close(connection);
        return isDone;
    }
    void expectSetAside(const QByteArray &bytes)
    {
        m_home.write(QStringLiteral("settings/") + domainName + QStringLiteral(".db"), bytes);
        LogCapture log;
        SqliteUserDefaultsProvider provider(directory());
        ASSERT_EQ(setAside().size(), 1);
        const QString aside = directory() + QLatin1Char('/') + setAside().constFirst();
        EXPECT_EQ(TemporaryHome::read(aside), bytes);
        const QString text = log.lines().join(QLatin1Char('\n'));
        EXPECT_TRUE(text.contains(database()) && text.contains(aside)) << text.toStdString();
        provider.standard().setBool(QStringLiteral("works"), true);
        EXPECT_EQ(SqliteUserDefaultsProvider(directory()).standard().boolForKey(QStringLiteral("works")), true);
    }

    TemporaryHome m_home;
};

} // namespace quillhaven::testing
