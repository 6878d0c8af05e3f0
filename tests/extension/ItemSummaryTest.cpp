// SPDX-License-Identifier: GPL-3.0-or-later

#include "extension/ItemSummary.h"

#include "extension/PublishedItems.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace quillhaven::test {

namespace {

using ::testing::ElementsAre;

class ItemSummaryTest : public testing::Test
{
protected:
    ItemSummaryTest() : settings(home.directories().configuration) {}

    [[nodiscard]] QString database() const
    {
        return SqliteUserDefaults::databasePath(settings, QString(settings::sharedSuite));
    }
    /// The words of what fits all of the paths.
    [[nodiscard]] QStringList offers(const QByteArrayList &paths) const
    {
        const auto summary = ItemSummary::read(settings);
        QStringList words;
        for (const MenuAction &action : menuActions) {
            if (fitsAll(summary, action.kind, paths)) {
                words.append(action.word);
            }
        }
        return words;
    }
    /// The names and contents of the settings folder, without the index of the log, which readers write too.
    [[nodiscard]] QMap<QString, QByteArray> filesOfSettings() const
    {
        QMap<QString, QByteArray> files;
        for (const QFileInfo &file : QDir(settings).entryInfoList(QDir::Files)) {
            if (file.suffix() != QStringLiteral("db-shm")) {
                files[file.fileName()] = TemporaryHome::read(file.filePath());
            }
        }
        return files;
    }

    TemporaryHome home;
    QString settings;
};

MATCHER(IsForUnknown, "")
{
    return arg == QStringList({QStringLiteral("protect"), QStringLiteral("shred")});
}

TEST_F(ItemSummaryTest, AnUnknownPathCanBeProtectedOrShredded)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/other"), true)});
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
}

TEST_F(ItemSummaryTest, AnUnlockedItemCanBeLockedOrShredded)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true)});
    EXPECT_THAT(offers({"/file"}), ElementsAre(QStringLiteral("lock"), QStringLiteral("shred")));
}

TEST_F(ItemSummaryTest, ThePlaceholderOfALockedItemCanBeUnlockedOrShredded)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), false)});
    EXPECT_THAT(offers({"/file"}), ElementsAre(QStringLiteral("unlock"), QStringLiteral("shred")));
}

TEST_F(ItemSummaryTest, OnlyTheExactPathIsKnown)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/Folder"), true)});
    for (const QByteArray path : {"/folder", "/Folder/file", "/Folder2", "/"}) {
        EXPECT_THAT(offers({path}), IsForUnknown()) << path.constData();
    }
}

TEST_F(ItemSummaryTest, SeveralPathsHaveWhatFitsAllOfThem)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/unlocked"), true),
                                           publishedItem(QStringLiteral("B"), QStringLiteral("/too"), true),
                                           publishedItem(QStringLiteral("C"), QStringLiteral("/locked"), false)});
    EXPECT_THAT(offers({"/unlocked", "/too"}), ElementsAre(QStringLiteral("lock"), QStringLiteral("shred")));
    EXPECT_THAT(offers({"/unlocked", "/locked"}), ElementsAre(QStringLiteral("shred")));
    EXPECT_THAT(offers({"/locked", "/unknown"}), ElementsAre(QStringLiteral("shred")));
    EXPECT_THAT(offers({}), ElementsAre());
}

TEST_F(ItemSummaryTest, OddNamesAreKnown)
{
    const QString name = QStringLiteral("/it's a \"plain\" 50% \\ $file\nmüll 😀");
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), name, true)});
    EXPECT_THAT(offers({name.toUtf8()}), ElementsAre(QStringLiteral("lock"), QStringLiteral("shred")));
    EXPECT_THAT(offers({name.toUtf8() + '\xff'}), IsForUnknown());
}

TEST_F(ItemSummaryTest, OfTwoItemsWithOnePathTheFirstCounts)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true),
                                           publishedItem(QStringLiteral("B"), QStringLiteral("/file"), false)});
    EXPECT_THAT(offers({"/file"}), ElementsAre(QStringLiteral("lock"), QStringLiteral("shred")));
}

TEST_F(ItemSummaryTest, AChangeIsSeenWhileTheProgramHasItInItsLog)
{
    const auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true)});
    ASSERT_TRUE(shared->changeArray(settings::protectedItems.key,
                                    {{publishedItem(QStringLiteral("A"), QStringLiteral("/file"), false)}, {}}));
    EXPECT_THAT(offers({"/file"}), ElementsAre(QStringLiteral("unlock"), QStringLiteral("shred")));
}

TEST_F(ItemSummaryTest, ItIsReadAfterTheProgramHasEnded)
{
    ASSERT_TRUE(publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true)}));
    EXPECT_THAT(offers({"/file"}), ElementsAre(QStringLiteral("lock"), QStringLiteral("shred")));
}

TEST_F(ItemSummaryTest, AMissingDomainIsNotCreated)
{
    EXPECT_EQ(ItemSummary::read(settings), std::nullopt);
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
    EXPECT_FALSE(QFileInfo::exists(database()));
}

TEST_F(ItemSummaryTest, ADamagedDomainIsLeftAsItIs)
{
    home.write(QStringLiteral(".config/quillhaven/") + QFileInfo(database()).fileName(), QByteArray(8192, 'x'));
    ASSERT_TRUE(QFileInfo::exists(database()));
    const auto before = filesOfSettings();
    EXPECT_EQ(ItemSummary::read(settings), std::nullopt);
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
    EXPECT_EQ(filesOfSettings(), before);
}

TEST_F(ItemSummaryTest, TheLogOfAnEmptiedDomainIsKept)
{
    auto shared = publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true)});
    const QByteArray log = TemporaryHome::read(database() + QStringLiteral("-wal"));
    ASSERT_FALSE(log.isEmpty());
    shared.reset();
    home.write(QStringLiteral(".config/quillhaven/") + QFileInfo(database()).fileName(), {});
    home.write(QStringLiteral(".config/quillhaven/") + QFileInfo(database()).fileName() + QStringLiteral("-wal"), log);
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
    EXPECT_EQ(TemporaryHome::read(database() + QStringLiteral("-wal")), log);
}

TEST_F(ItemSummaryTest, ADomainThatIsHeldExclusivelyIsUnknownAfterAMoment)
{
    ASSERT_TRUE(publish(settings, {publishedItem(QStringLiteral("A"), QStringLiteral("/file"), true)}));
    sqlite3 *holder = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(database()).constData(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder,
                           "PRAGMA locking_mode = EXCLUSIVE; BEGIN IMMEDIATE; "
                           "INSERT INTO defaults VALUES ('a', 'b', 'c')",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
    sqlite3_close(holder);
}

TEST_F(ItemSummaryTest, AnotherValueThanTheSummaryIsUnknown)
{
    auto shared = publish(settings, {{QStringLiteral("A"), "{not json"}});
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
    ASSERT_TRUE(shared->setArray(settings::protectedItems.key, {{QStringLiteral("A"), "7"}}));
    EXPECT_THAT(offers({"/file"}), IsForUnknown());
}

} // namespace

} // namespace quillhaven::test
