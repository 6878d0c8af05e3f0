// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredItemsFixture.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ShredPrompts : public ShredItemsTest
{
protected:
    ShredPrompts() { setMasterPassword(); }

    /// The user cancels the prompt after this status, and types the password again at the following one.
    void cancelAfter(const QString &beginning)
    {
        onReport = [this, beginning](const QString &status) {
            // The shredder's own statuses are reported after its prompt.
            if (status.startsWith(QStringLiteral("Shredding "))) {
                const bool isCancelled = status.startsWith(beginning);
                engine().masterPasswordEntry = isCancelled ? std::nullopt : std::optional(QStringLiteral("Master12"));
            }
        };
    }
};

} // namespace

TEST_F(ShredPrompts, CancelledPromptForTheOperationTouchesNothing)
{
    const ProtectedItem item = unlockedFile();
    becomeIdle();
    engine().masterPasswordEntry.reset();
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 1);
    EXPECT_EQ(report, QStringList());
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_EQ(engine().count(), 1);
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(ShredPrompts, UnlockedItemAsksForTheOperationAndForTheContainer)
{
    const ProtectedItem item = unlockedFile();
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 2);
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
    EXPECT_FALSE(engine().masterPassword.hasAuthenticationTimer());
    expectGone(item);
}

TEST_F(ShredPrompts, LockedItemAsksAgainForItsUnlock)
{
    const ProtectedItem item = lockedFile();
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 3);
    EXPECT_EQ(engine().passwordPrompts, 1);
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
    expectGone(item);
}

TEST_F(ShredPrompts, ItemWithoutFilesAsksOnceAndClosesTheSession)
{
    const ProtectedItem item = unlockedFile();
    ASSERT_TRUE(QFile::remove(item.originalPath));
    ASSERT_TRUE(QFile::remove(item.containerPath));
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 1);
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
    EXPECT_FALSE(engine().masterPassword.hasAuthenticationTimer());
}

TEST_F(ShredPrompts, ItemWithABackupAsksForItToo)
{
    const ProtectedItem item = lockedFile();
    engine().itemPassword.reset();
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 4);
    expectGone(item);
}

TEST_F(ShredPrompts, CancelledPromptForTheContainerLeavesItOnDiskAndTheItemOffTheList)
{
    const ProtectedItem item = unlockedFile();
    cancelAfter(QStringLiteral("Shredding container"));
    shred(item);
    EXPECT_EQ(engine().masterPrompts, 2);
    EXPECT_EQ(report.last(), QStringLiteral("Item securely shredded: a.txt @ 1.0000"));
    EXPECT_FALSE(exists(item.originalPath));
    EXPECT_TRUE(exists(item.containerPath));
    EXPECT_FALSE(services.credentials.entries.contains(item.id));
    expectUnlisted(item);
}

TEST_F(ShredPrompts, CancelledPromptForTheOriginalKeepsItAndTheOtherStepsRun)
{
    const ProtectedItem item = lockedFile();
    cancelAfter(QStringLiteral("Shredding original"));
    // The prompt for the container comes after its status, which restores the answer.
    shred(item);
    EXPECT_EQ(stages(), QStringLiteral("Unlocking item before shredding... @ 0.1000\n"
                                       "Item unlocked, proceeding with shredding... @ 0.2000\n"
                                       "Shredding original file: a.txt @ 0.3000\n"
                                       "Shredding container file... @ 0.9000\n"
                                       "Item securely shredded: a.txt @ 1.0000"));
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_FALSE(exists(item.containerPath));
    expectUnlisted(item);
}

TEST_F(ShredPrompts, CancelledPromptForTheBackupKeepsItAndTheContainerIsDestroyed)
{
    const ProtectedItem item = lockedFile();
    engine().itemPassword.reset();
    cancelAfter(QStringLiteral("Shredding backup"));
    shred(item);
    EXPECT_FALSE(exists(item.originalPath));
    EXPECT_EQ(read(item.originalBackupPath), "secret");
    EXPECT_FALSE(exists(item.containerPath));
    expectUnlisted(item);
}

TEST_F(ShredPrompts, CancellingAllStepsKeepsEverythingButTheRecord)
{
    const ProtectedItem item = unlockedFile();
    onReport = [this](const QString &) {
        engine().masterPasswordEntry.reset();
        engine().masterPassword.endSession(); // as when it expires
    };
    shred(item);
    EXPECT_EQ(lines(), QStringLiteral("Shredding original file: a.txt @ 0.3000\n"
                                      "Shredding container file... @ 0.9000\n"
                                      "Item securely shredded: a.txt @ 1.0000"));
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_TRUE(exists(item.containerPath));
    expectUnlisted(item);
}

TEST_F(ShredPrompts, FailureDoesNotChangeTheSession)
{
    const ProtectedItem item = unlockedFile();
    hooks.before = failing("openForOverwriting", EACCES, {item.originalPath});
    EXPECT_NE(failureOf([&] { shred(item); }), QStringLiteral("no error"));
    EXPECT_TRUE(engine().masterPassword.isAuthenticated());
    EXPECT_TRUE(engine().masterPassword.hasAuthenticationTimer());
}

TEST_F(ShredPrompts, CancelledPromptForAListTouchesNothing)
{
    const ProtectedItem item = unlockedFile();
    becomeIdle();
    engine().masterPasswordEntry.reset();
    bulkShred({item});
    EXPECT_EQ(report, QStringList());
    EXPECT_EQ(read(item.originalPath), "secret");
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(ShredPrompts, CancelledPromptForAnItemOfAListCountsAsDone)
{
    const ProtectedItem first = unlockedFile(QStringLiteral("a.txt"));
    const ProtectedItem second = unlockedFile(QStringLiteral("b.txt"));
    cancelAfter(QStringLiteral("Shredding b.txt..."));
    bulkShred({first, second});
    EXPECT_EQ(report.last(), QStringLiteral("Successfully shredded 2 items @ 1.0000"));
    EXPECT_FALSE(exists(first.originalPath));
    EXPECT_EQ(read(second.originalPath), "secret");
    EXPECT_EQ(engine().count(), 1);
    EXPECT_EQ(engine().item().id, second.id);
}

TEST_F(ShredPrompts, ListThatSucceedsClosesTheSession)
{
    bulkShred({});
    EXPECT_EQ(engine().masterPrompts, 1);
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
    bulkShred({unlockedFile(QStringLiteral("a.txt")), unlockedFile(QStringLiteral("b.txt"))});
    EXPECT_EQ(engine().masterPrompts, 4) << "the list, a's container, b, b's container";
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
}

TEST_F(ShredPrompts, PathsAskOnceForTheRunAndOnceForEachAfterTheFirst)
{
    const QString a = services.home.write(QStringLiteral("Desktop/a"));
    const QString b = services.home.write(QStringLiteral("Desktop/b"));
    shredPaths({a, b});
    EXPECT_EQ(engine().masterPrompts, 2);
    EXPECT_FALSE(engine().masterPassword.isAuthenticated());
    EXPECT_FALSE(exists(a));
    EXPECT_FALSE(exists(b));
}

TEST_F(ShredPrompts, CancelledPromptForPathsTouchesNothing)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a"), "mine");
    engine().masterPasswordEntry.reset();
    shredPaths({path});
    EXPECT_EQ(report, QStringList());
    EXPECT_EQ(read(path), "mine");
    EXPECT_FALSE(engine().manager.isProcessing());
}

TEST_F(ShredPrompts, PathsThatFailLeaveTheSessionOpen)
{
    EXPECT_NE(failureOf([&] { shredPaths({services.home.path(QStringLiteral("absent"))}); }),
              QStringLiteral("no error"));
    EXPECT_TRUE(engine().masterPassword.isAuthenticated());
    spinOnce();
    EXPECT_FALSE(engine().manager.isProcessing());
}
