// SPDX-License-Identifier: GPL-3.0-or-later

// One file has several paths without a link: below a bind mount, and in a folder that ignores the case of the letters.
// It has at most one record all the same, and two files whose names differ only in their case have one each.
//
// A kernel need not have a file system that ignores the case. A file that is mounted beside itself under another
// spelling is the same for every question that the program asks of it.

#include "engine/ItemPlaces.h"
#include "platform/linux/files/FileFixture.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFileInfo>

#include <optional>

#include <sys/mount.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString alreadyProtected = QStringLiteral("Item is already protected");

class SeveralNames : public ::testing::Test
{
protected:
    void protectAll(const QStringList &paths)
    {
        runTask(
            engine.manager.bulkProtectItems(paths, QStringLiteral("Abcdefg1"), false, [](const QString &, double) {}));
    }
    /// Expects that neither the question, nor either core, nor a list takes the path.
    void expectRejected(const QString &rejected)
    {
        EXPECT_EQ(engine.manager.canProtectItem(rejected).errorMessage, alreadyProtected);
        EXPECT_EQ(engine.manager.protectablePaths({rejected}), QStringList());
        expectRejectedByCore([&] { engine.protect(rejected); });
        expectRejectedByCore(
            [&] { runTask(engine.manager.protectItemWithAccessibleURL(rejected, QStringLiteral("Abcdefg1"), false)); });
    }
    template <typename Protect>
    void expectRejectedByCore(Protect protect)
    {
        const qsizetype count = engine.count();
        const QStringList stored = privateStorage();
        QString text;
        EXPECT_EQ(engineErrorOf(protect, &text), QuillhavenError::accessDenied);
        EXPECT_EQ(text, alreadyProtected);
        EXPECT_EQ(engine.count(), count);
        EXPECT_EQ(privateStorage(), stored);
    }
    QStringList privateStorage() const
    {
        return QDir(services.home.path(QStringLiteral(".local/share/quillhaven")))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    /// Expects that there is one record, and that its data comes back.
    void expectOneRecordWithItsData()
    {
        ASSERT_EQ(engine.count(), 1);
        engine.remove();
        EXPECT_EQ(TemporaryHome::read(path), "years of work");
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    EngineHarness engine{services, files};
    const QString path = services.home.write(QStringLiteral("work/thesis.txt"), "years of work");
};

/// The folder is mounted at a second place.
class BoundFolder : public SeveralNames
{
protected:
    const QString boundFolder = QFileInfo(services.home.write(QStringLiteral("bound/covered"))).path();
    const Mount mount{services.home.path(QStringLiteral("work")), boundFolder, nullptr, MS_BIND};
    const QString other = boundFolder + QStringLiteral("/thesis.txt");
};

/// The folder knows the file by another spelling of its name as well.
class OtherSpelling : public SeveralNames
{
protected:
    void mountAgain()
    {
        mount.reset();
        mount.emplace(path, other, nullptr, MS_BIND);
    }

    const QString other = services.home.write(QStringLiteral("work/Thesis.txt"), {});
    std::optional<Mount> mount{std::in_place, path, other, nullptr, MS_BIND};
};

/// Two files, whose names differ only in their case.
class OtherFile : public SeveralNames
{
protected:
    const QString other = services.home.write(QStringLiteral("work/Thesis.txt"), "another work");
};

} // namespace

TEST_F(BoundFolder, ItemIsKnownByEitherPath)
{
    engine.protect(path);
    expectRejected(other);
    engine.unlock();
    expectRejected(other);
    expectOneRecordWithItsData();
}

TEST_F(BoundFolder, ItemOfTheSecondPlaceIsKnownByTheFirst)
{
    engine.protect(other);
    expectRejected(path);
    engine.unlock();
    expectRejected(path);
    expectOneRecordWithItsData();
}

TEST_F(BoundFolder, ListWithBothPathsProtectsTheFileOnce)
{
    EXPECT_EQ(engine.manager.protectablePaths({path, other}), QStringList{path});
    EXPECT_EQ(engine.manager.protectablePaths({other, path}), QStringList{other});
    protectAll({path, other});
    expectOneRecordWithItsData();
}

TEST_F(BoundFolder, FileIsKnownBeforeItsFirstProtectionHasMovedIt)
{
    HeldCall held(hooks, "moveItem", path);
    const RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(held.hasStarted());
    expectRejected(other);
    held.letGo();
    first.wait();
    expectOneRecordWithItsData();
}

TEST_F(BoundFolder, FileIsKnownWhileItsFirstProtectionHasOnlyPutAPieceOfThePlaceholder)
{
    HeldCall held(hooks, "writeFile", path);
    const RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(held.hasStarted());
    expectRejectedByCore([this] { engine.protect(other); });
    services.home.write(QStringLiteral("work/thesis.txt"), "This");
    expectRejected(other);
    held.letGo();
    first.wait();
    expectOneRecordWithItsData();
}

TEST_F(OtherSpelling, UnlockedItemIsKnown)
{
    engine.protect(path);
    engine.unlock();
    mountAgain();
    expectRejected(other);
    mount.reset();
    expectOneRecordWithItsData();
}

TEST_F(OtherSpelling, LockedItemIsKnown)
{
    engine.protect(path);
    mountAgain();
    expectRejected(other);
    mount.reset();
    expectOneRecordWithItsData();
}

TEST_F(OtherSpelling, ListWithBothNamesHasTheFileOnce)
{
    EXPECT_EQ(engine.manager.protectablePaths({path, other}), QStringList{path});
    EXPECT_EQ(engine.manager.protectablePaths({other, path}), QStringList{other});
    protectAll({path, other});
    mount.reset();
    expectOneRecordWithItsData();
}

TEST_F(OtherSpelling, FileIsKnownBeforeItsFirstProtectionHasMovedIt)
{
    HeldCall held(hooks, "moveItem", path);
    const RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(held.hasStarted());
    expectRejected(other);
    held.letGo();
    first.wait();
    mount.reset();
    expectOneRecordWithItsData();
}

TEST_F(OtherSpelling, FileIsKnownWhileItsFirstProtectionHasOnlyPutAPieceOfThePlaceholder)
{
    HeldCall held(hooks, "writeFile", path);
    const RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(held.hasStarted());
    services.home.write(QStringLiteral("work/thesis.txt"), "This");
    mountAgain();
    expectRejected(other);
    held.letGo();
    first.wait();
    mount.reset();
    expectOneRecordWithItsData();
}

TEST_F(OtherFile, HasItsOwnRecord)
{
    EXPECT_EQ(engine.manager.protectablePaths({path, other}), (QStringList{path, other}));
    engine.protect(path);
    EXPECT_TRUE(engine.manager.canProtectItem(other).canProtect);
    engine.protect(other);
    engine.unlock();
    engine.unlock(1);
    EXPECT_EQ(TemporaryHome::read(path), "years of work");
    EXPECT_EQ(TemporaryHome::read(other), "another work");
}

TEST_F(OtherFile, IsProtectedWhileTheFirstStillIs)
{
    for (const char *call : {"moveItem", "writeFile"}) {
        HeldCall held(hooks, call, path);
        const RunningTask first(engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false));
        ASSERT_TRUE(held.hasStarted());
        EXPECT_TRUE(engine.manager.canProtectItem(other).canProtect) << call;
        engine.protect(other);
        held.letGo();
        first.wait();
        ASSERT_EQ(engine.count(), 2) << call;
        engine.remove();
        engine.remove();
        EXPECT_EQ(TemporaryHome::read(path), "years of work") << call;
        EXPECT_EQ(TemporaryHome::read(other), "another work") << call;
        hooks.before = {};
    }
}
