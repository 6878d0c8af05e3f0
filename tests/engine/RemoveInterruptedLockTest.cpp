// SPDX-License-Identifier: GPL-3.0-or-later

// Removing the protection of an item whose record says unlocked, while a private copy exists: the program ended within
// a lock, so that a placeholder or a piece of one is at the place, or nobody can say what is there.

#include "engine/ProtectedFileFixture.h"

#include <QFile>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class RemoveInterruptedLock : public ProtectedFileTest
{
protected:
    /// Leaves the unlocked item as a lock does that ends before it has saved the record.
    void interruptLock(const QByteArray &pieceOfPlaceholder = placeholderText.toUtf8())
    {
        startUnlocked();
        ASSERT_TRUE(QFile::rename(path, engine.item().originalBackupPath));
        services.home.write(QStringLiteral("Desktop/a.txt"), pieceOfPlaceholder);
    }
    void removeAsOneOfAList()
    {
        runTask(engine.manager.bulkRemoveProtection(engine.manager.protectedItems(), [](const QString &, double) {}));
    }
    void expectGivenBack(const ProtectedItem &item)
    {
        EXPECT_EQ(TemporaryHome::read(path), "mine");
        EXPECT_FALSE(TemporaryHome::exists(item.originalBackupPath));
        EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
        EXPECT_TRUE(services.credentials.entries.isEmpty());
        EXPECT_TRUE(engine.storedItems().isEmpty());
    }
    void expectNothingBusy()
    {
        EXPECT_TRUE(spinUntil([this] { return !engine.manager.isProcessing(); }));
        for (const ProtectedItem &item : engine.manager.protectedItems()) {
            EXPECT_FALSE(item.isProcessing);
        }
    }
    /// Puts a file at the place of the unlocked item that nobody can look into, and a private copy beside it.
    void makePlaceUnreadable()
    {
        startUnlocked();
        ASSERT_TRUE(QFile::copy(path, engine.item().originalBackupPath));
        hooks.before = failing("readFile", EACCES, {path});
    }
    void expectUnchanged()
    {
        EXPECT_EQ(TemporaryHome::read(path), "mine");
        EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
        EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems());
        EXPECT_EQ(services.credentials.entries.size(), 1);
        expectNothingBusy();
    }

    const QString unreadable = FileError::fromErrno(EACCES, FileError::Action::Read, path).errorDescription();
};

} // namespace

TEST_F(RemoveInterruptedLock, DataOfAnInterruptedLockComesBack)
{
    const QByteArray placeholder = placeholderText.toUtf8();
    for (const QByteArray &piece : {placeholder, placeholder.first(20), QByteArray()}) {
        interruptLock(piece);
        const ProtectedItem item = engine.item();
        ASSERT_TRUE(item.isMounted);
        engine.remove();
        expectGivenBack(item);
        expectNothingBusy();
        EXPECT_EQ(services.panels.placeRequests.size(), 1) << "the user confirms the place";
    }
}

TEST_F(RemoveInterruptedLock, BulkRunGivesTheDataOfAnInterruptedLockBack)
{
    const QByteArray placeholder = placeholderText.toUtf8();
    for (const QByteArray &piece : {placeholder, placeholder.first(20), QByteArray()}) {
        interruptLock(piece);
        const ProtectedItem item = engine.item();
        removeAsOneOfAList();
        expectGivenBack(item);
        expectNothingBusy();
    }
}

TEST_F(RemoveInterruptedLock, DataOfAnInterruptedLockComesBackAfterARestart)
{
    interruptLock();
    const ProtectedItem item = engine.item();
    EngineHarness restarted(services);
    ASSERT_EQ(restarted.count(), 1);
    restarted.remove();
    expectGivenBack(item);
    EXPECT_EQ(restarted.count(), 0);
}

TEST_F(RemoveInterruptedLock, UnlockedItemThatCannotBeLookedIntoIsReportedAndStays)
{
    makePlaceUnreadable();
    QString text;
    try {
        engine.remove();
    } catch (const FileError &error) {
        text = error.errorDescription();
    }
    EXPECT_EQ(text, unreadable);
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
    expectUnchanged();
    hooks.before = {};
    engine.remove();
    EXPECT_EQ(engine.count(), 0) << "no lease remains";
}

TEST_F(RemoveInterruptedLock, BulkRunReportsAnUnlockedItemThatCannotBeLookedInto)
{
    makePlaceUnreadable();
    QString text;
    EXPECT_EQ(engineErrorOf([this] { removeAsOneOfAList(); }, &text), QuillhavenError::encryptionFailed);
    EXPECT_EQ(text, QStringLiteral("Failed to create encrypted container: Some items failed to remove "
                                   "protection:\na.txt: ") +
                        unreadable);
    expectUnchanged();
    hooks.before = {};
    removeAsOneOfAList();
    EXPECT_EQ(engine.count(), 0) << "no lease remains";
}

TEST_F(RemoveInterruptedLock, PipeAtThePlaceOfAnUnlockedItemEndsTheRemovalWithoutWaiting)
{
    startUnlocked();
    ASSERT_TRUE(QFile::rename(path, engine.item().originalBackupPath));
    ASSERT_EQ(::mkfifo(path.toUtf8().constData(), S_IRUSR | S_IWUSR), 0);
    EXPECT_THROW(engine.remove(), FileError);
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems());
    expectNothingBusy();
}
