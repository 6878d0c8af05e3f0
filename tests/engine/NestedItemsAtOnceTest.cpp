// SPDX-License-Identifier: GPL-3.0-or-later

// Operations that run at once on a folder and on a file in it: one waits for the other, since each moves what the other
// one looks for.

#include "engine/PlaceholderFile.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class NestedItemsAtOnce : public ::testing::Test
{
protected:
    /// Ends with the folder unlocked.
    void protectFolder()
    {
        engine.protect(folder);
        engine.unlock(indexOf(folder));
    }
    [[nodiscard]] qsizetype indexOf(const QString &path) const
    {
        const auto &items = engine.manager.protectedItems();
        return std::ranges::find(items, path, &ProtectedItem::originalPath) - items.begin();
    }
    /// Gives everything back, the folder first.
    void removeAll()
    {
        engine.remove(indexOf(folder));
        engine.remove(indexOf(file));
        EXPECT_EQ(engine.count(), 0);
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    EngineHarness engine{services, files};
    const QString file = services.home.write(QStringLiteral("Desktop/folder/in.txt"), "mine");
    const QString folder = services.home.path(QStringLiteral("Desktop/folder"));
};

} // namespace

TEST_F(NestedItemsAtOnce, LockOfAFolderWaitsForTheProtectionOfAFileInIt)
{
    protectFolder();
    HeldCall write(hooks, "writeFile", file); // The data has moved; the placeholder is next.
    const RunningTask<void> protection(engine.manager.protectItem(file, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(write.hasStarted());
    const RunningTask<void> lock(engine.manager.lockItem(engine.item(indexOf(folder))));
    spinOnce();
    EXPECT_FALSE(engine.manager.catalogue().isLeased(engine.item(indexOf(folder)).id));
    write.letGo();
    protection.wait();
    write.letGo(); // for the placeholder of the folder, if it has this path
    lock.wait();
    ASSERT_EQ(engine.count(), 2);
    EXPECT_EQ(TemporaryHome::read(folder), placeholderText.toUtf8());
    removeAll();
    EXPECT_EQ(TemporaryHome::read(file), "mine");
}

TEST_F(NestedItemsAtOnce, ProtectionOfAFolderWaitsForTheProtectionOfAFileInIt)
{
    HeldCall write(hooks, "writeFile", file);
    const RunningTask<void> inner(engine.manager.protectItem(file, QStringLiteral("Abcdefg1"), false));
    ASSERT_TRUE(write.hasStarted());
    const RunningTask<void> outer(engine.manager.protectItem(folder, QStringLiteral("Abcdefg1"), false));
    spinOnce();
    EXPECT_FALSE(engine.manager.catalogue().isLeased(folder)) << "the lease of a place is named by its path";
    write.letGo();
    inner.wait();
    outer.wait();
    ASSERT_EQ(engine.count(), 2);
    removeAll();
    EXPECT_EQ(TemporaryHome::read(file), "mine");
}

TEST_F(NestedItemsAtOnce, RemovalOfAFileWaitsForTheLockOfItsFolder)
{
    engine.protect(file);
    protectFolder();
    HeldCall move(hooks, "moveItem", folder);
    const RunningTask<void> lock(engine.manager.lockItem(engine.item(indexOf(folder))));
    ASSERT_TRUE(move.hasStarted());
    const ProtectedItem inner = engine.item(indexOf(file));
    const RunningTask<void> removal(engine.manager.removeProtectionWithAccessibleURL(inner, file));
    spinOnce();
    EXPECT_FALSE(removal.isFinished());
    EXPECT_TRUE(TemporaryHome::exists(inner.originalBackupPath));
    move.letGo();
    lock.wait();
    EXPECT_THROW(removal.wait(), LocalizedError) << "its place has gone with the folder";
    EXPECT_EQ(TemporaryHome::read(inner.originalBackupPath), "mine");
    ASSERT_EQ(engine.count(), 2);
    hooks.before = nullptr;
    removeAll();
    EXPECT_EQ(TemporaryHome::read(file), "mine");
}

TEST_F(NestedItemsAtOnce, NeighbourWhoseNameBeginsWithTheFoldersNameDoesNotWait)
{
    const QString neighbour = services.home.write(QStringLiteral("Desktop/folder 2/in.txt"), "theirs");
    protectFolder();
    HeldCall move(hooks, "moveItem", folder);
    const RunningTask<void> lock(engine.manager.lockItem(engine.item(indexOf(folder))));
    ASSERT_TRUE(move.hasStarted());
    engine.protect(neighbour);
    EXPECT_FALSE(lock.isFinished());
    move.letGo();
    lock.wait();
    EXPECT_EQ(engine.count(), 2);
}
