// SPDX-License-Identifier: GPL-3.0-or-later

#include "SettingsFixture.h"

#include <QFileInfo>

namespace quillhaven::test {

namespace {

const QString sharedDomain = QStringLiteral("shared");

class DamagedSettingsTest : public SettingsFixture
{
protected:
    /// Ends a program without its clean-up, and returns the write-ahead log that it leaves next to the database.
    QByteArray logOfKilledProgram()
    {
        QProcess writer;
        writer.start(QStringLiteral(SETTINGS_WRITER), {directory(), domainName, QStringLiteral("loop")});
        EXPECT_TRUE(writer.waitForReadyRead(30'000));
        writer.kill();
        EXPECT_TRUE(writer.waitForFinished(30'000));
        const QByteArray log = TemporaryHome::read(database() + QStringLiteral("-wal"));
        EXPECT_FALSE(log.isEmpty());
        return log;
    }
    /// Starts the program with a log without its database: no data is lost, and a new database works.
    void expectLogSetAside(const QByteArray &log)
    {
        LogCapture lines;
        SqliteUserDefaultsProvider provider(directory());
        const QStringList logs = setAside().filter(QStringLiteral("-wal"));
        ASSERT_EQ(logs.size(), 1);
        EXPECT_EQ(TemporaryHome::read(directory() + QLatin1Char('/') + logs.constFirst()), log);
        EXPECT_TRUE(lines.lines().join(QLatin1Char('\n')).contains(database()));
        provider.standard().setBool(QStringLiteral("works"), true);
        EXPECT_EQ(SqliteUserDefaultsProvider(directory()).standard().boolForKey(QStringLiteral("works")), true);
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
};

TEST_F(DamagedSettingsTest, AnInvalidFileIsSetAsideUnchanged)
{
    expectSetAside(QByteArray(10'000, 'g'));
}

TEST_F(DamagedSettingsTest, ATruncatedDatabaseIsSetAsideUnchanged)
{
    {
        SqliteUserDefaultsProvider provider(directory());
        provider.standard().setData(QStringLiteral("long"), QByteArray(50'000, 'x'));
    }
    const QByteArray whole = TemporaryHome::read(database());
    ASSERT_GT(whole.size(), 50'000);
    expectSetAside(whole.left(20'000));
}

TEST_F(DamagedSettingsTest, AFileOfZeroBytesBecomesADatabase)
{
    m_home.write(QStringLiteral("settings/") + domainName + QStringLiteral(".db"), {});
    SqliteUserDefaultsProvider provider(directory());
    provider.standard().setBool(QStringLiteral("works"), true);
    EXPECT_EQ(SqliteUserDefaultsProvider(directory()).standard().boolForKey(QStringLiteral("works")), true);
}

TEST_F(DamagedSettingsTest, WithoutAUsableFolderTheDomainIsInMemoryAndThereIsNoSuite)
{
    ASSERT_TRUE(QDir().mkpath(database()));
    ASSERT_TRUE(QDir().mkpath(directory() + QStringLiteral("/shared.db")));
    LogCapture log;
    SqliteUserDefaultsProvider provider(directory());
    EXPECT_TRUE(log.lines().join(QLatin1Char('\n')).contains(directory()));
    provider.standard().setBool(QStringLiteral("key"), true);
    EXPECT_EQ(provider.standard().boolForKey(QStringLiteral("key")), true);
    EXPECT_EQ(provider.suite(QStringLiteral("shared")), nullptr);
    EXPECT_TRUE(QFileInfo(database()).isDir());
}

TEST_F(DamagedSettingsTest, ALogWithoutItsDatabaseIsSetAside)
{
    const QByteArray log = logOfKilledProgram();
    ASSERT_TRUE(QFile::remove(database()));
    expectLogSetAside(log);
}

TEST_F(DamagedSettingsTest, ALogOfAnEmptyDatabaseIsSetAside)
{
    const QByteArray log = logOfKilledProgram();
    ASSERT_TRUE(QFile::resize(database(), 0));
    expectLogSetAside(log);
}

TEST_F(DamagedSettingsTest, AnEndBetweenTheRenamesLosesNeitherTheDatabaseNorItsLog)
{
    const QByteArray log = logOfKilledProgram();
    const QByteArray damaged(10'000, 'g');
    m_home.write(QStringLiteral("settings/") + domainName + QStringLiteral(".db"), damaged);
    // The first rename was made, and the process was killed.
    const QString aside = database() + QStringLiteral(".corrupt-20260101T000000000Z");
    ASSERT_TRUE(QFile::rename(database(), aside));
    expectLogSetAside(log);
    EXPECT_EQ(TemporaryHome::read(aside), damaged);
}

TEST_F(DamagedSettingsTest, AnotherProgramDoesNotChangeADamagedDatabase)
{
    const QByteArray garbage(10'000, 'g');
    m_home.write(QStringLiteral("settings/shared.db"), garbage);
    EXPECT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("key"), QStringLiteral("x")}, sharedDomain), 3);
    EXPECT_EQ(TemporaryHome::read(directory() + QStringLiteral("/shared.db")), garbage);
    EXPECT_TRUE(setAside(sharedDomain).isEmpty());
}

TEST_F(DamagedSettingsTest, AnotherProgramDoesNotChangeALogWithoutItsDatabase)
{
    const QByteArray log = logOfKilledProgram();
    ASSERT_TRUE(QFile::remove(database()));
    EXPECT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("key"), QStringLiteral("x")}), 3);
    EXPECT_EQ(TemporaryHome::read(database() + QStringLiteral("-wal")), log);
    EXPECT_FALSE(QFileInfo::exists(database()));
}

TEST_F(DamagedSettingsTest, AnotherProgramOpensOnlyOneDomain)
{
    m_home.write(QStringLiteral("settings/") + domainName + QStringLiteral(".db"), QByteArray(10'000, 'g'));
    EXPECT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("key"), QStringLiteral("x")}, sharedDomain), 0);
    EXPECT_TRUE(setAside().isEmpty());
    SqliteUserDefaultsProvider provider(directory());
    EXPECT_EQ(provider.suite(sharedDomain)->stringForKey(QStringLiteral("key")), QStringLiteral("x"));
}

} // namespace

} // namespace quillhaven::test
