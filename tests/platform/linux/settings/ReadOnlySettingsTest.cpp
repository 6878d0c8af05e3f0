// SPDX-License-Identifier: GPL-3.0-or-later

// Settings that cannot be written. The runner allows a normal user to mount file systems and to be another user.

#include "SettingsFixture.h"
#include "platform/linux/files/FileFixture.h"
#include "support/RunTask.h"
#include "support/UnwritableSettings.h"

#include <cstring>

namespace quillhaven::test {

namespace {

const QString key = QStringLiteral("key");
const QString list = QStringLiteral("list");
const QList<ArrayElement> elements{{.id = QStringLiteral("a"), .value = "1"}};

class ReadOnlySettingsTest : public SettingsFixture
{
protected:
    void store(const QString &text)
    {
        SqliteUserDefaultsProvider provider(directory());
        provider.standard().setString(key, text);
        ASSERT_TRUE(provider.standard().setArray(list, elements));
    }
    void makeReadOnly(bool isReadOnly) const
    {
        const auto flags = static_cast<unsigned long>(MS_REMOUNT | (isReadOnly ? MS_RDONLY : 0));
        const QByteArray name = QFile::encodeName(directory());
        // A program that looks at the ended writer's memory keeps its mapping of the volume for a moment.
        ASSERT_TRUE(spinUntil([&] { return ::mount(nullptr, name.constData(), nullptr, flags, nullptr) == 0; }))
            << std::strerror(errno);
    }
    /// Lets the user "nobody" in, and makes it the owner.
    void giveAway(const QString &path, mode_t mode) const
    {
        const QByteArray name = QFile::encodeName(path);
        ASSERT_EQ(chown(name.constData(), 65534, 65534), 0);
        ASSERT_EQ(chmod(name.constData(), mode), 0);
    }
    void giveAwayAll(mode_t modeOfDatabase) const
    {
        ASSERT_EQ(chmod(QFile::encodeName(m_home.path()).constData(), 0755), 0);
        giveAway(directory(), 0700);
        giveAway(database() + QStringLiteral(".changed"), 0600);
        giveAway(database(), modeOfDatabase);
    }
    static void expectValues(UserDefaultsProvider &provider)
    {
        EXPECT_EQ(provider.standard().stringForKey(key), QStringLiteral("text"));
        EXPECT_EQ(provider.standard().dataForKey(list), QByteArray("[1]"));
    }
    void expectProblem(const SqliteUserDefaultsProvider &provider, const char *reason) const
    {
        const QString problem = provider.problem().value_or(QString());
        EXPECT_TRUE(problem.contains(database()) && problem.contains(QLatin1String(reason))) << qUtf8Printable(problem);
    }
};

TEST_F(ReadOnlySettingsTest, WritableSettingsHaveNoProblem)
{
    SqliteUserDefaultsProvider provider(directory());
    EXPECT_EQ(provider.problem(), std::nullopt);
    EXPECT_TRUE(provider.reopen());
}

TEST_F(ReadOnlySettingsTest, ADatabaseAndItsLogOnAReadOnlyVolumeAreRead)
{
    ASSERT_TRUE(QDir().mkpath(directory()));
    const Mount volume(QStringLiteral("tmpfs"), directory(), "tmpfs", 0);
    ASSERT_TRUE(volume.isMounted());
    store(QStringLiteral("old"));
    QProcess writer;
    writer.start(QStringLiteral(SETTINGS_WRITER), {directory(), domainName, QStringLiteral("loop")});
    ASSERT_TRUE(writer.waitForReadyRead(30'000));
    ASSERT_EQ(runWriter({QStringLiteral("set"), key, QStringLiteral("text")}), 0);
    writer.kill();
    ASSERT_TRUE(writer.waitForFinished(30'000));
    ASSERT_GT(QFileInfo(database() + QStringLiteral("-wal")).size(), 0);
    makeReadOnly(true);

    LogCapture log;
    SqliteUserDefaultsProvider provider(directory());
    expectValues(provider);
    expectProblem(provider, "Read-only file system");
    EXPECT_TRUE(log.lines().join(QLatin1Char('\n')).contains(database()));
    EXPECT_FALSE(provider.reopen());
    expectValues(provider);
}

TEST_F(ReadOnlySettingsTest, AFileWithoutThePermissionToWriteIsRead)
{
    store(QStringLiteral("text"));
    giveAwayAll(0400);
    const QByteArray before = TemporaryHome::read(database());
    {
        const AsPlainUser user;
        SqliteUserDefaultsProvider provider(directory());
        expectValues(provider);
        expectProblem(provider, "Permission denied");
    }
    EXPECT_EQ(TemporaryHome::read(database()), before);
}

TEST_F(ReadOnlySettingsTest, AFileThatCannotBeReadIsReportedAndReadOnceItCan)
{
    store(QStringLiteral("text"));
    giveAwayAll(0000);
    const QByteArray before = TemporaryHome::read(database());
    {
        const AsPlainUser user;
        SqliteUserDefaultsProvider provider(directory());
        EXPECT_EQ(provider.standard().stringForKey(key), std::nullopt);
        expectProblem(provider, "cannot be read: Permission denied");
        EXPECT_FALSE(provider.standard().setArray(list, {}));
        const auto changes = changesOf(provider.standard());
        ASSERT_EQ(chmod(QFile::encodeName(database()).constData(), 0600), 0);
        EXPECT_TRUE(provider.reopen());
        EXPECT_EQ(provider.problem(), std::nullopt);
        expectValues(provider);
        changes->sort();
        EXPECT_EQ(*changes, QStringList({key, list}));
    }
    EXPECT_EQ(TemporaryHome::read(database()), before);
}

TEST_F(ReadOnlySettingsTest, AFolderInWhichNoDatabaseCanBeMadeIsReported)
{
    ASSERT_TRUE(QDir().mkpath(directory()));
    ASSERT_EQ(chmod(QFile::encodeName(m_home.path()).constData(), 0755), 0);
    giveAway(directory(), 0500);
    const AsPlainUser user;
    const SqliteUserDefaultsProvider provider(directory());
    expectProblem(provider, "cannot be created: Permission denied");
}

TEST_F(ReadOnlySettingsTest, ArraysCannotBeChangedAndOtherValuesOnlyUntilTheEnd)
{
    store(QStringLiteral("text"));
    const UnwritableSettings obstacle(directory());
    {
        SqliteUserDefaultsProvider provider(directory());
        expectValues(provider);
        EXPECT_FALSE(provider.standard().setArray(list, {}));
        EXPECT_FALSE(provider.standard().changeArray(list, {.put = {}, .removed = {QStringLiteral("a")}}));
        expectValues(provider);
        provider.standard().setString(key, QStringLiteral("changed"));
        EXPECT_EQ(provider.standard().stringForKey(key), QStringLiteral("changed"));
    }
    SqliteUserDefaultsProvider again(directory());
    expectValues(again);
}

TEST_F(ReadOnlySettingsTest, AReopenedDomainIsStoredAndNoticesOtherPrograms)
{
    store(QStringLiteral("text"));
    auto obstacle = std::make_unique<UnwritableSettings>(directory());
    SqliteUserDefaultsProvider provider(directory());
    UserDefaults &standard = provider.standard();
    ASSERT_TRUE(provider.problem().has_value());
    obstacle.reset();
    ASSERT_TRUE(provider.reopen());
    EXPECT_EQ(&provider.standard(), &standard);
    EXPECT_TRUE(standard.setArray(list, {}));
    EXPECT_EQ(SqliteUserDefaultsProvider(directory()).standard().dataForKey(list), QByteArray("[]"));
    ASSERT_EQ(runWriter({QStringLiteral("set"), key, QStringLiteral("theirs")}), 0);
    EXPECT_TRUE(spinUntil([&] { return standard.stringForKey(key) == QStringLiteral("theirs"); }));
}

} // namespace

} // namespace quillhaven::test
