// SPDX-License-Identifier: GPL-3.0-or-later

// A file has at most one record, whichever path leads to it, and a placeholder has none: two records for one place
// would destroy the data when the protection of both is removed.

#include "engine/ItemPlaces.h"
#include "engine/PlaceholderFile.h"
#include "support/EngineHarness.h"
#include "support/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString alreadyProtected = QStringLiteral("Item is already protected");

class OneRecordForEachFile : public ::testing::Test
{
protected:
    QString link(const QString &name, const QString &target)
    {
        const QString made = services.home.path(name);
        EXPECT_TRUE(QFile::link(target, made));
        return made;
    }
    QStringList storedNames() const
    {
        return QDir(services.home.path(QStringLiteral(".local/share/quillhaven")))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    /// As one of a list, whose panel returns each path as requested; the panel of a single item resolves a link.
    static void protectAsOneOfAList(EngineHarness &engine, const QString &link)
    {
        runTask(engine.manager.protectItemWithAccessibleURL(link, QStringLiteral("Abcdefg1"), false));
    }
    /// Expects that the engine rejects the path, and creates neither a record nor a private copy.
    void expectRejected(EngineHarness &engine, const QString &rejected)
    {
        expectRejected(engine, [&] { engine.protect(rejected); });
    }
    template <typename Protect>
    void expectRejected(EngineHarness &engine, Protect protect)
    {
        const qsizetype count = engine.count();
        const QStringList stored = storedNames();
        QString description;
        EXPECT_EQ(engineErrorOf(protect, &description), QuillhavenError::accessDenied);
        EXPECT_EQ(description, alreadyProtected);
        EXPECT_EQ(engine.count(), count);
        EXPECT_EQ(storedNames(), stored);
    }

    TestPlatform services;
    QString path = services.home.write(QStringLiteral("work/real/thesis.txt"), "years of work");
};

} // namespace

TEST_F(OneRecordForEachFile, PathThroughALinkedFolderIsRejected)
{
    const QString other =
        link(QStringLiteral("link"), services.home.path(QStringLiteral("work/real"))) + QStringLiteral("/thesis.txt");
    EngineHarness engine(services);
    engine.protect(path);
    EXPECT_EQ(engine.manager.canProtectItem(other).errorMessage, alreadyProtected);
    expectRejected(engine, other);
    engine.unlock();
    EXPECT_EQ(engine.manager.canProtectItem(other).errorMessage, alreadyProtected);
    expectRejected(engine, other);
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
}

TEST_F(OneRecordForEachFile, LinkToAnUnlockedItemIsRejected)
{
    const QString other = link(QStringLiteral("latest.txt"), path);
    EngineHarness engine(services);
    engine.protect(path);
    engine.unlock();
    EXPECT_EQ(engine.manager.canProtectItem(other).errorMessage, alreadyProtected);
    expectRejected(engine, [&] { protectAsOneOfAList(engine, other); });
}

TEST_F(OneRecordForEachFile, TargetOfAProtectedLinkHasItsOwnRecord)
{
    const QString other = link(QStringLiteral("latest.txt"), path);
    EngineHarness engine(services);
    protectAsOneOfAList(engine, other);
    engine.unlock();
    EXPECT_TRUE(engine.manager.canProtectItem(path).canProtect);
    engine.protect(path);
    EXPECT_EQ(engine.count(), 2);
}

TEST_F(OneRecordForEachFile, AnotherSpellingOfThePathIsRejected)
{
    EngineHarness engine(services);
    engine.protect(path);
    engine.unlock();
    expectRejected(engine, services.home.path(QStringLiteral("work/real/../real/thesis.txt")));
}

TEST_F(OneRecordForEachFile, FolderThroughALinkIsRejected)
{
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("work/real")));
    engine.unlock();
    expectRejected(engine,
                   link(QStringLiteral("link"), services.home.path(QStringLiteral("work"))) + QStringLiteral("/real"));
}

TEST_F(OneRecordForEachFile, PlaceholderIsRejectedWithOrWithoutARecord)
{
    const QString lost = services.home.write(QStringLiteral("lost.txt"), placeholderText.toUtf8());
    EngineHarness engine(services);
    EXPECT_EQ(engine.manager.canProtectItem(lost).errorMessage, alreadyProtected);
    expectRejected(engine, lost);
    engine.protect(path);
    expectRejected(engine, path);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(OneRecordForEachFile, FileThatOnlyBeginsLikeAPlaceholderIsProtected)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("longer.txt"), placeholderText.toUtf8() + "\n"));
    engine.protect(services.home.write(QStringLiteral("empty.txt"), {}));
    EXPECT_EQ(engine.count(), 2);
}

TEST_F(OneRecordForEachFile, FileSavedOverAPlaceholderIsRejected)
{
    EngineHarness engine(services);
    engine.protect(path);
    services.home.write(QStringLiteral("work/real/thesis.txt"), "three new hours");
    expectRejected(engine, path);
    EXPECT_EQ(TemporaryHome::read(path), "three new hours");
}

TEST_F(OneRecordForEachFile, SecondAttemptWhileTheFirstStoresItsCredentialIsRejected)
{
    EngineHarness engine(services);
    RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    // One thread does the move, the placeholder and the container; the credential is stored afterwards.
    ASSERT_TRUE(spinUntil([this] { return QFileInfo(path).size() == placeholderText.toUtf8().size(); }));
    EXPECT_EQ(engine.manager.canProtectItem(path).errorMessage, alreadyProtected);
    expectRejected(engine, path);
    first.wait();
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(OneRecordForEachFile, TwoSimultaneousRunsCreateOneRecord)
{
    const QString other =
        link(QStringLiteral("link"), services.home.path(QStringLiteral("work/real"))) + QStringLiteral("/thesis.txt");
    EngineHarness engine(services);
    RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    RunningTask second(engine.manager.protectItem(other, QStringLiteral("Abcdefg1"), false));
    int failures = 0;
    for (RunningTask<void> *run : {&first, &second}) {
        try {
            run->wait();
        } catch (const QuillhavenError &error) {
            ++failures;
            EXPECT_EQ(error.errorDescription(), alreadyProtected);
        }
    }
    EXPECT_EQ(failures, 1);
    ASSERT_EQ(engine.count(), 1);
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
}

TEST_F(OneRecordForEachFile, BulkRunProtectsAFileThatIsListedTwiceOnce)
{
    const QString other =
        link(QStringLiteral("link"), services.home.path(QStringLiteral("work/real"))) + QStringLiteral("/thesis.txt");
    EngineHarness engine(services);
    EXPECT_EQ(engine.manager.protectablePaths({path, other, path}), QStringList{path});
    runTask(engine.manager.bulkProtectItems({path, other, path}, QStringLiteral("Abcdefg1"), false,
                                            [](const QString &, double) {}));
    ASSERT_EQ(engine.count(), 1);
    runTask(engine.manager.bulkUnlockItems(engine.manager.protectedItems(), [](const QString &, double) {}));
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
}

TEST_F(OneRecordForEachFile, HardLinksOfOneFileAreSeparateItems)
{
    const QString other = services.home.path(QStringLiteral("other.txt"));
    ASSERT_EQ(::link(path.toUtf8().constData(), other.toUtf8().constData()), 0);
    EngineHarness engine(services);
    EXPECT_EQ(engine.manager.protectablePaths({path, other}), (QStringList{path, other}));
    engine.protect(path);
    engine.protect(other);
    engine.remove();
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
    EXPECT_EQ(TemporaryHome::read(other), "years of work");
}

TEST_F(OneRecordForEachFile, HardLinkOfAnUnlockedItemIsAnItemOfItsOwn)
{
    const QString other = services.home.path(QStringLiteral("other.txt"));
    ASSERT_EQ(::link(path.toUtf8().constData(), other.toUtf8().constData()), 0);
    EngineHarness engine(services);
    engine.protect(path);
    engine.unlock();
    EXPECT_EQ(engine.manager.protectablePaths({other}), QStringList{other});
    engine.protect(other);
    engine.lock();
    engine.remove();
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
    EXPECT_EQ(TemporaryHome::read(other), "years of work");
}

TEST_F(OneRecordForEachFile, HardLinkedUnlockedItemIsKnownUnderALinkedFolder)
{
    ASSERT_EQ(::link(path.toUtf8().constData(), services.home.path(QStringLiteral("other.txt")).toUtf8().constData()),
              0);
    const QString linked = services.home.path(QStringLiteral("linked"));
    ASSERT_TRUE(QFile::link(parentDirectory(path), linked));
    EngineHarness engine(services);
    engine.protect(path);
    engine.unlock();
    EXPECT_EQ(engine.manager.protectablePaths({linked + QLatin1Char('/') + lastPathComponent(path)}), QStringList());
}

TEST_F(OneRecordForEachFile, PlaceIsFreeAgainAfterItsRunHasFailed)
{
    PlacesInProtection places;
    const FileManager &files = services.platform().fileManager;
    {
        const auto claim = places.claim(files, path);
        EXPECT_TRUE(places.isClaimed(files, path));
        EXPECT_EQ(places.claim(files, path), nullptr);
    }
    EXPECT_FALSE(places.isClaimed(files, path));
    EXPECT_NE(places.claim(files, path), nullptr);
}
