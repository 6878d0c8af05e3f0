// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "engine/ProtectedFileFixture.h"
#include "formats/SecuredContainer.h"

#include <QDir>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class RescueItems : public ProtectedFileTest
{
protected:
    /// Protects a file, and lets the program end after that step: `call` on the path is the first that does not happen.
    void interruptProtection(const QString &place, const std::string &call, const QString &path)
    {
        hooks.before = failing(call, EIO, {path});
        EXPECT_ANY_THROW(engine.protect(place));
        hooks.before = nullptr;
        EXPECT_EQ(engine.count(), 0);
    }
    /// As after a kill before the record was saved: everything but the record exists.
    void loseRecord()
    {
        engine.manager.removeFromProtectedItems(engine.item().id);
        engine.manager.saveProtectedItems();
    }
    [[nodiscard]] RescueFindings find() { return runTask(engine.manager.findLostItems()); }
    [[nodiscard]] LostItem lost()
    {
        const RescueFindings findings = find();
        EXPECT_EQ(findings.lostItems.size(), 1);
        return findings.lostItems.value(0);
    }
    [[nodiscard]] QString inHome(const QString &relative) const { return services.home.path(relative); }
    [[nodiscard]] bool giveBack(const LostItem &item, const QString &place)
    {
        return runTask(engine.manager.giveBackLostItem(item, place));
    }
    [[nodiscard]] bool listAgain(const LostItem &item, const QString &place)
    {
        return runTask(engine.manager.listLostItem(item, place));
    }
};

TEST_F(RescueItems, WithoutInterruptionNothingIsFound)
{
    startLocked();
    EXPECT_EQ(find(), RescueFindings());
    engine.unlock();
    EXPECT_EQ(find(), RescueFindings());
}

TEST_F(RescueItems, ALostFileIsKnownByItsContainerAndItsPlaceholder)
{
    startLocked("some bytes");
    const ProtectedItem item = engine.item();
    loseRecord();
    const LostItem found = lost();
    EXPECT_EQ(found.privatePath, item.originalBackupPath);
    EXPECT_EQ(found.id, item.id);
    EXPECT_FALSE(found.isFolder);
    EXPECT_EQ(found.size, 10);
    EXPECT_EQ(found.name, QStringLiteral("a.txt"));
    EXPECT_EQ(found.containerPath, item.containerPath);
    EXPECT_EQ(found.probablePlace, path);
    EXPECT_TRUE(found.modified.isValid());
}

TEST_F(RescueItems, AFileLostRightAfterItsMoveIsFoundWithoutAName)
{
    const QString place = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    interruptProtection(place, "writeFile", inHome(QStringLiteral("Documents/a.txt.secured")));
    QFile::remove(inHome(QStringLiteral("Documents/a.txt.secured")));
    const LostItem found = lost();
    EXPECT_EQ(found.name, QString());
    EXPECT_EQ(found.probablePlace, QString());
    ASSERT_TRUE(giveBack(found, inHome(QStringLiteral("found.txt"))));
    EXPECT_EQ(TemporaryHome::read(inHome(QStringLiteral("found.txt"))), "mine");
    EXPECT_EQ(find(), RescueFindings());
}

TEST_F(RescueItems, ALostFolderIsKnownByTheMarkerThatNamesIt)
{
    services.home.write(QStringLiteral("Desktop/papers/will.txt"), "will");
    services.home.write(QStringLiteral("Desktop/papers/deep/more.txt"), "more");
    engine.protect(inHome(QStringLiteral("Desktop/papers")));
    loseRecord();
    const LostItem found = lost();
    EXPECT_TRUE(found.isFolder);
    EXPECT_EQ(found.size, 8);
    EXPECT_EQ(found.name, QStringLiteral("papers"));
    ASSERT_TRUE(giveBack(found, found.probablePlace));
    EXPECT_EQ(engine.passwordPrompts, 0);
    EXPECT_EQ(TemporaryHome::read(inHome(QStringLiteral("Desktop/papers/deep/more.txt"))), "more");
}

TEST_F(RescueItems, APlaceholderIsFoundAnywhereBelowTheHomeFolder)
{
    const QString place = services.home.write(QStringLiteral("work/2026/reports/deep/b.txt"), "deep");
    engine.protect(place);
    loseRecord();
    EXPECT_EQ(lost().probablePlace, place);
}

TEST_F(RescueItems, WhatBelongsToAListedItemIsNoContainerAndNoPlaceOfALostOne)
{
    startLocked("same size");
    const QString other = services.home.write(QStringLiteral("other/a.txt"), "same size");
    engine.protect(other);
    engine.manager.removeFromProtectedItems(engine.item(0).id);
    const LostItem found = lost();
    EXPECT_EQ(found.name, QString());
    EXPECT_EQ(found.probablePlace, QString());
}

TEST_F(RescueItems, GivingBackKeepsTheMetadataAndForgetsTheCredential)
{
    services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    const QByteArray name = QFile::encodeName(path);
    ASSERT_EQ(::chmod(name.constData(), 0640), 0);
    ASSERT_EQ(::setxattr(name.constData(), "user.note", "kept", 4, 0), 0);
    const timespec times[2] = {{1'000'000'000, 1}, {1'234'567'890, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, name.constData(), times, 0), 0);
    engine.protect(path);
    const QString id = engine.item().id;
    loseRecord();
    ASSERT_TRUE(giveBack(lost(), path));
    EXPECT_EQ(engine.passwordPrompts, 1);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    struct stat status{};
    ASSERT_EQ(::stat(name.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(status.st_mtim.tv_sec, 1'234'567'890);
    EXPECT_EQ(status.st_mtim.tv_nsec, 123'456'789);
    char note[8]{};
    EXPECT_EQ(::getxattr(name.constData(), "user.note", note, sizeof note), 4);
    EXPECT_EQ(engine.platform.credentials.copyMatching(keychainServiceName, id).status, credentialItemNotFound);
    EXPECT_EQ(find(), RescueFindings());
}

TEST_F(RescueItems, AWrongOrACancelledPasswordGivesNothingBack)
{
    startLocked();
    loseRecord();
    engine.itemPassword = QStringLiteral("Wrong123");
    EXPECT_EQ(engineErrorOf([&] { (void)giveBack(lost(), path); }), QuillhavenError::authenticationFailed);
    engine.itemPassword.reset();
    EXPECT_FALSE(giveBack(lost(), path));
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(find().lostItems.size(), 1);
}

TEST_F(RescueItems, TheMasterPasswordGuardsTheRescue)
{
    startLocked();
    loseRecord();
    setMasterPassword();
    engine.masterPasswordEntry.reset();
    EXPECT_FALSE(giveBack(lost(), path));
    EXPECT_FALSE(listAgain(lost(), path));
    EXPECT_EQ(engine.passwordPrompts, 0);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    EXPECT_TRUE(giveBack(lost(), path));
}

TEST_F(RescueItems, SomethingElseAtTheProbablePlaceIsKeptAside)
{
    startLocked();
    loseRecord();
    services.home.write(QStringLiteral("Desktop/a.txt"), "new work");
    ASSERT_TRUE(giveBack(lost(), path));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(inHome(QStringLiteral("Desktop/a (kept aside).txt"))), "new work");
}

TEST_F(RescueItems, ThePlaceOfAListedItemIsRefused)
{
    startLocked();
    loseRecord();
    const LostItem item = lost();
    const QString other = services.home.write(QStringLiteral("other.txt"), "other");
    engine.protect(other);
    EXPECT_EQ(engineErrorOf([&] { (void)giveBack(item, other); }), QuillhavenError::accessDenied);
    EXPECT_EQ(engineErrorOf([&] { (void)listAgain(item, other); }), QuillhavenError::accessDenied);
    EXPECT_EQ(TemporaryHome::read(other), placeholderText.toUtf8());
    EXPECT_EQ(find().lostItems.size(), 1);
}

TEST_F(RescueItems, AListedAgainFileOpensWithItsOldPassword)
{
    startLocked();
    const ProtectedItem before = engine.item();
    loseRecord();
    ASSERT_TRUE(listAgain(lost(), path));
    ASSERT_EQ(engine.count(), 1);
    EXPECT_EQ(engine.item(), before);
    EXPECT_EQ(engine.storedItems(), QList<ProtectedItem>{before});
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(RescueItems, AListedAgainFileWithAFingerprintStillNeedsIt)
{
    startLockedWithTouchID();
    loseRecord();
    ASSERT_TRUE(listAgain(lost(), path));
    EXPECT_TRUE(engine.item().useTouchID);
}

TEST_F(RescueItems, WithoutAPlaceholderTheListedAgainItemGetsOne)
{
    startLocked();
    loseRecord();
    const QString place = inHome(QStringLiteral("elsewhere.txt"));
    ASSERT_TRUE(listAgain(lost(), place));
    EXPECT_EQ(TemporaryHome::read(place), placeholderText.toUtf8());
    EXPECT_EQ(engine.item().originalName, QStringLiteral("elsewhere.txt"));
}

TEST_F(RescueItems, OfSeveralFilesOfOneSizeNoneIsNamedByAnother)
{
    for (const QString &name : {QStringLiteral("alpha.txt"), QStringLiteral("gamma.txt")}) {
        engine.protect(services.home.write(QStringLiteral("Desktop/") + name, "same size"));
    }
    loseRecord();
    loseRecord();
    const RescueFindings findings = find();
    ASSERT_EQ(findings.lostItems.size(), 2);
    for (const LostItem &item : findings.lostItems) {
        EXPECT_EQ(item.name, QString());
        EXPECT_EQ(item.probablePlace, QString());
    }
}

TEST_F(RescueItems, AFolderOfTheProgramIsNoPlaceForALostItem)
{
    startLocked();
    loseRecord();
    const LostItem item = lost();
    for (const QString &folder : {QStringLiteral(".local/share/quillhaven"), QStringLiteral(".config/quillhaven")}) {
        const QString place = inHome(folder + QStringLiteral("/a.txt"));
        EXPECT_EQ(engineErrorOf([&] { (void)giveBack(item, place); }), QuillhavenError::accessDenied);
        EXPECT_EQ(engineErrorOf([&] { (void)listAgain(item, place); }), QuillhavenError::accessDenied);
    }
    EXPECT_EQ(lost(), item);
}

TEST_F(RescueItems, WithoutPrivateStorageNothingIsTakenForReturned)
{
    startLocked();
    services.home.write(QStringLiteral("Desktop/a.txt"), "saved over the placeholder");
    const QString storage = inHome(QStringLiteral(".local/share/quillhaven"));
    ASSERT_TRUE(QDir().rename(storage, storage + QStringLiteral("-away")));
    EXPECT_EQ(find(), RescueFindings());
}

TEST_F(RescueItems, AFileWithoutAStoredPasswordCannotBeListedAgain)
{
    const QString place = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    interruptProtection(place, "writeFile", place);
    EXPECT_EQ(engineErrorOf([&] { (void)listAgain(lost(), place); }), QuillhavenError::accessDenied);
    ASSERT_TRUE(giveBack(lost(), place));
    EXPECT_EQ(engine.passwordPrompts, 0);
    EXPECT_EQ(TemporaryHome::read(place), "mine");
}

TEST_F(RescueItems, TheDataOfAnInterruptedLockComesBackForThePasswordOfItsItem)
{
    startUnlocked("old");
    ASSERT_TRUE(QFile::rename(path, engine.item().originalBackupPath));
    services.home.write(QStringLiteral("Desktop/a.txt"), "new");
    engine.lock();
    const LostItem item = lost();
    EXPECT_EQ(item.id, engine.item().id);
    EXPECT_EQ(engineErrorOf([&] { (void)listAgain(item, inHome(QStringLiteral("old.txt"))); }),
              QuillhavenError::accessDenied);
    ASSERT_TRUE(giveBack(item, inHome(QStringLiteral("old.txt"))));
    EXPECT_EQ(TemporaryHome::read(inHome(QStringLiteral("old.txt"))), "old");
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "new");
}

TEST_F(RescueItems, AnInterruptedLockIsFoundAndFinished)
{
    startUnlocked("mine");
    ASSERT_TRUE(QFile::rename(path, engine.item().originalBackupPath));
    EXPECT_EQ(find().interruptedLocks, QStringList(engine.item().id));
    services.home.write(QStringLiteral("Desktop/a.txt"), placeholderText.toUtf8().left(30));
    EXPECT_EQ(find().interruptedLocks, QStringList(engine.item().id));
    engine.lock();
    EXPECT_EQ(find(), RescueFindings());
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(RescueItems, ARunningProtectionIsNotLost)
{
    services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    HeldCall held(hooks, "writeFile", path);
    const auto protection = engine.manager.protectItem(path, QStringLiteral("Abcdefg1"), false);
    ASSERT_TRUE(held.hasStarted());
    EXPECT_EQ(find(), RescueFindings());
    held.letGo();
    spinUntil([&] { return protection.isReady(); });
    EXPECT_EQ(find(), RescueFindings());
}

TEST_F(RescueItems, AFailedProtectionIsReported)
{
    int reports = 0;
    QObject::connect(&engine.manager, &QuillhavenManager::itemLeftBehind, &engine.manager, [&] { ++reports; });
    const QString place = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    interruptProtection(place, "writeFile", place);
    EXPECT_EQ(reports, 1);
    ASSERT_TRUE(giveBack(lost(), place));
    engine.protect(place);
    EXPECT_EQ(reports, 1);
}

TEST_F(RescueItems, ARowWhoseDataIsBackIsMarkedAsUnlocked)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(path) && QFile::rename(engine.item().originalBackupPath, path));
    EXPECT_EQ(find().returnedItems, QStringList(engine.item().id));
    ASSERT_TRUE(runTask(engine.manager.settleReturnedItem(engine.item().id, QuillhavenManager::Returned::Unlocked)));
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(engine.storedItems().at(0).mountedPath, path);
    EXPECT_EQ(find(), RescueFindings());
    engine.lock();
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(RescueItems, TheRemovalOfARowWhoseDataIsBackIsFinished)
{
    startLocked();
    const ProtectedItem item = engine.item();
    ASSERT_TRUE(QFile::remove(path) && QFile::rename(item.originalBackupPath, path));
    ASSERT_TRUE(runTask(engine.manager.settleReturnedItem(item.id, QuillhavenManager::Returned::Removed)));
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
    EXPECT_EQ(engine.platform.credentials.copyMatching(keychainServiceName, item.id).status, credentialItemNotFound);
}

TEST_F(RescueItems, ARowThatIsReallyLockedCannotBeSettled)
{
    startLocked();
    EXPECT_EQ(engineErrorOf([&] {
                  (void)runTask(
                      engine.manager.settleReturnedItem(engine.item().id, QuillhavenManager::Returned::Removed));
              }),
              QuillhavenError::itemNotFound);
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(RescueItems, WhatIsNotNamedLikeAPrivateCopyIsNotOffered)
{
    startLocked();
    services.home.write(QStringLiteral(".local/share/quillhaven/notes.txt"), "notes");
    services.home.write(QStringLiteral(".local/share/quillhaven/.quillhaven-discard-x"), "rest");
    EXPECT_EQ(find(), RescueFindings());
}

} // namespace
