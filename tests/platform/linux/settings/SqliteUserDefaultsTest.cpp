// SPDX-License-Identifier: GPL-3.0-or-later

#include "SettingsFixture.h"
#include "support/RunTask.h"

#include <QDateTime>

#include <limits>

#include <sys/stat.h>

namespace quillhaven::test {

namespace {

using SqliteUserDefaultsTest = SettingsFixture;

TEST_F(SqliteUserDefaultsTest, EveryTypeSurvivesARestart)
{
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    const QVariantMap map{{QStringLiteral("a"), QStringLiteral("é")}, {QStringLiteral("b"), true}};
    const QByteArray bytes("\0\xff[]", 4);
    {
        SqliteUserDefaultsProvider provider(directory());
        UserDefaults &defaults = provider.standard();
        defaults.setBool(QStringLiteral("bool"), false);
        defaults.setInteger(QStringLiteral("integer"), std::numeric_limits<qlonglong>::min());
        defaults.setObject(QStringLiteral("real"), 0.1);
        defaults.setString(QStringLiteral("string"), QStringLiteral("naïve 🔒"));
        defaults.setData(QStringLiteral("data"), bytes);
        defaults.setObject(QStringLiteral("date"), date);
        defaults.setObject(QStringLiteral("dictionary"), map);
    }
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    EXPECT_EQ(defaults.boolForKey(QStringLiteral("bool")), false);
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("integer")), std::numeric_limits<qlonglong>::min());
    EXPECT_EQ(defaults.doubleForKey(QStringLiteral("real")), 0.1);
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("string")), QStringLiteral("naïve 🔒"));
    EXPECT_EQ(defaults.dataForKey(QStringLiteral("data")), bytes);
    EXPECT_EQ(defaults.dateForKey(QStringLiteral("date")), date);
    EXPECT_EQ(defaults.dictionaryForKey(QStringLiteral("dictionary")), map);
}

TEST_F(SqliteUserDefaultsTest, AMissingKeyAndAnotherTypeAreReadAsMissing)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    defaults.setString(QStringLiteral("key"), QStringLiteral("1"));
    EXPECT_FALSE(defaults.boolForKey(QStringLiteral("key")));
    EXPECT_FALSE(defaults.integerForKey(QStringLiteral("key")));
    EXPECT_FALSE(defaults.dataForKey(QStringLiteral("key")));
    EXPECT_FALSE(defaults.stringForKey(QStringLiteral("other")));
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("other")).isValid());
}

TEST_F(SqliteUserDefaultsTest, AnUndecodableStoredValueIsReadAsMissing)
{
    SqliteUserDefaultsProvider provider(directory());
    ASSERT_TRUE(runSql("INSERT INTO defaults VALUES ('a','bool','x'),('b','integer','12z'),('c','real',''),"
                       "('d','date','soon'),('e','dictionary','[1'),('f','wheel','1'),('g','integer',NULL)"));
    for (const char key : {'a', 'b', 'c', 'd', 'e', 'f', 'g'}) {
        EXPECT_FALSE(provider.standard().objectForKey(QString(QLatin1Char(key))).isValid()) << key;
    }
}

TEST_F(SqliteUserDefaultsTest, OnlyTheOwnerCanAccessTheFiles)
{
    SqliteUserDefaultsProvider provider(directory());
    provider.standard().setBool(QStringLiteral("key"), true);
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(directory()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700U);
    for (const QString &suffix :
         {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".changed")}) {
        ASSERT_EQ(::stat(QFile::encodeName(database() + suffix).constData(), &status), 0) << suffix.toStdString();
        EXPECT_EQ(status.st_mode & 0777, 0600U) << suffix.toStdString();
    }
}

TEST_F(SqliteUserDefaultsTest, AChangeIsReportedImmediatelyAndAnEqualValueIsNot)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    const auto changes = changesOf(defaults);
    defaults.setBool(QStringLiteral("key"), true);
    EXPECT_EQ(changes->size(), 1);
    defaults.setBool(QStringLiteral("key"), true);
    EXPECT_EQ(changes->size(), 1);
    defaults.removeObject(QStringLiteral("key"));
    EXPECT_EQ(changes->size(), 2);
    defaults.removeObject(QStringLiteral("key"));
    spinOnce();
    EXPECT_EQ(changes->size(), 2);
}

TEST_F(SqliteUserDefaultsTest, ChangesOfAnotherProcessAreReadAndReportedForTheirKeysOnly)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    defaults.setString(QStringLiteral("same"), QStringLiteral("old"));
    const auto changes = changesOf(defaults);
    ASSERT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("same"), QStringLiteral("old")}), 0);
    ASSERT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("key"), QStringLiteral("new")}), 0);
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("key")), QStringLiteral("new"));
    ASSERT_TRUE(spinUntil([&] { return changes->size() == 1; }));
    EXPECT_EQ(changes->at(0), QStringLiteral("key"));
    ASSERT_EQ(runWriter({QStringLiteral("remove"), QStringLiteral("key")}), 0);
    ASSERT_TRUE(spinUntil([&] { return changes->size() == 2; }));
    EXPECT_FALSE(defaults.stringForKey(QStringLiteral("key")));
}

TEST_F(SqliteUserDefaultsTest, TheLastOfManyChangesOfAnotherProcessIsReported)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    const QString key = QStringLiteral("count");
    qlonglong seen = 0;
    QObject::connect(&defaults, &UserDefaults::valueChanged, &defaults,
                     [&] { seen = defaults.integerForKey(key).value_or(-1); });
    for (int round = 0; round < 5; ++round) {
        seen = 0;
        QProcess writer;
        writer.start(QStringLiteral(SETTINGS_WRITER),
                     {directory(), domainName, QStringLiteral("count"), key, QStringLiteral("200")});
        EXPECT_TRUE(spinUntil([&] { return seen == 200; })) << seen;
        ASSERT_TRUE(spinUntil([&] { return writer.state() == QProcess::NotRunning; }));
        defaults.removeObject(key);
    }
}

TEST_F(SqliteUserDefaultsTest, AFailedReadIsAnErrorAndNotAMissingKey)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    defaults.setBool(QStringLiteral("key"), true);
    const auto changes = changesOf(defaults);
    ASSERT_TRUE(runSql("DROP TABLE defaults"));
    try {
        (void)defaults.boolForKey(QStringLiteral("key"));
        FAIL() << "the read reported no error";
    } catch (const UserDefaultsError &error) {
        EXPECT_TRUE(error.errorDescription().startsWith(QStringLiteral("Could not read the setting key: ")))
            << error.what();
    }
    EXPECT_THROW((void)defaults.objectForKey(QStringLiteral("other")), UserDefaultsError);
    EXPECT_TRUE(changes->isEmpty());
}

TEST_F(SqliteUserDefaultsTest, AFailedReadOfChangesByAnotherProcessReportsNone)
{
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &defaults = provider.standard();
    defaults.setBool(QStringLiteral("key"), true);
    const auto changes = changesOf(defaults);
    ASSERT_TRUE(runSql("ALTER TABLE defaults RENAME TO elsewhere"));
    LogCapture log;
    QFile touched(database() + QStringLiteral(".changed"));
    ASSERT_TRUE(touched.open(QIODevice::ReadWrite) && touched.write("1") == 1 && touched.flush());
    ASSERT_TRUE(spinUntil([&] { return !log.lines().isEmpty(); }));
    EXPECT_TRUE(log.lines().constFirst().contains(QStringLiteral("Could not read")))
        << log.lines().constFirst().toStdString();
    ASSERT_TRUE(runSql("ALTER TABLE elsewhere RENAME TO defaults"));
    ASSERT_EQ(runWriter({QStringLiteral("set"), QStringLiteral("new"), QStringLiteral("x")}), 0);
    ASSERT_TRUE(spinUntil([&] { return !changes->isEmpty(); }));
    EXPECT_EQ(*changes, QStringList{QStringLiteral("new")});
}

TEST_F(SqliteUserDefaultsTest, AKilledWriterLeavesADatabaseThatReadsCleanly)
{
    for (int round = 0; round < 5; ++round) {
        QProcess writer;
        writer.start(QStringLiteral(SETTINGS_WRITER), {directory(), domainName, QStringLiteral("loop")});
        ASSERT_TRUE(writer.waitForReadyRead(30'000));
        writer.kill();
        ASSERT_TRUE(writer.waitForFinished(30'000));
        ASSERT_EQ(writer.exitStatus(), QProcess::CrashExit);
        SqliteUserDefaultsProvider provider(directory());
        EXPECT_TRUE(setAside().isEmpty());
        EXPECT_TRUE(provider.standard().integerForKey(QStringLiteral("first")));
        const auto second = provider.standard().dataForKey(QStringLiteral("second"));
        ASSERT_TRUE(second);
        EXPECT_EQ(*second, QByteArray(200'000, second->at(0)));
    }
}

TEST_F(SqliteUserDefaultsTest, AFailedWriteIsLoggedWithItsKeyAndNotReported)
{
    SqliteUserDefaultsProvider provider(directory());
    ASSERT_TRUE(runSql("CREATE TRIGGER refuse BEFORE INSERT ON defaults BEGIN SELECT RAISE(ABORT, 'refused'); END"));
    const auto changes = changesOf(provider.standard());
    LogCapture log;
    provider.standard().setBool(QStringLiteral("lostKey"), true);
    const QString text = log.lines().join(QLatin1Char('\n'));
    EXPECT_TRUE(text.contains(QStringLiteral("lostKey")) && text.contains(QStringLiteral("refused")))
        << text.toStdString();
    EXPECT_EQ(changes->size(), 0);
}

} // namespace

} // namespace quillhaven::test
