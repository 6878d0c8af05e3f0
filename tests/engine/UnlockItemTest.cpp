// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ProtectedFileFixture.h"

#include <QDir>
#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using UnlockItem = ProtectedFileTest;

} // namespace

TEST_F(UnlockItem, RightPasswordRestoresTheDataToItsPlace)
{
    startLocked();
    const QByteArray container = TemporaryHome::read(engine.item().containerPath);
    log.clear();
    engine.unlock();

    const ProtectedItem &item = engine.item();
    EXPECT_TRUE(item.isMounted);
    EXPECT_EQ(item.mountedPath, item.originalPath);
    EXPECT_FALSE(item.isProcessing);
    EXPECT_EQ(engine.storedItems(), QList<ProtectedItem>{item});
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(TemporaryHome::exists(item.originalBackupPath));
    EXPECT_EQ(TemporaryHome::read(item.containerPath), container);
    const QString storage = QFileInfo(item.originalBackupPath).path();
    EXPECT_EQ(log.lines().join(QLatin1Char('\n')), QStringLiteral("🔓 Unlocking: a.txt\n"
                                                                  "📁 Original path: %1\n"
                                                                  "💾 Backup path: %2\n"
                                                                  "📍 DEBUG: Checking if backup exists at: %2\n"
                                                                  "📍 DEBUG: Backup directory: %3\n"
                                                                  "📍 DEBUG: Backup directory exists: true\n"
                                                                  "📍 DEBUG: Backup file exists: true\n"
                                                                  "📍 DEBUG: File access granted for unlock: %1\n"
                                                                  "🗑️ Removed placeholder file\n"
                                                                  "✅ Successfully restored item to: %1")
                                                       .arg(path, item.originalBackupPath, storage));
}

TEST_F(UnlockItem, PasswordDialogAsksForTheItemByName)
{
    startLocked();
    QStringList texts;
    QObject::connect(&engine.passwordDialog, &PasswordInputDialogManager::asked, &engine.manager, [&] {
        texts << engine.passwordDialog.title() << engine.passwordDialog.message();
        EXPECT_FALSE(engine.passwordDialog.requiresConfirmation());
    });
    engine.unlock();
    EXPECT_EQ(texts.mid(0, 2).join(QLatin1Char('|')),
              QStringLiteral("Password Required|Enter the password for 'a.txt':"));
}

TEST_F(UnlockItem, WrongPasswordFailsAndTheItemRemainsLocked)
{
    startLocked();
    engine.itemPassword = QStringLiteral("Abcdefg2");
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
    EXPECT_EQ(engine.passwordPrompts, 1) << "one attempt per call";
}

TEST_F(UnlockItem, MissingCredentialFailsLikeAWrongPassword)
{
    startLocked();
    services.credentials.entries.clear();
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
}

TEST_F(UnlockItem, CancelledPasswordDialogEndsSilentlyWithTheRecordBusyAndEndsTheSession)
{
    setMasterPassword();
    startLocked();
    engine.itemPassword.reset();
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_TRUE(engine.item().isProcessing);
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(UnlockItem, DeclinedPanelEndsSilentlyWithTheRecordBusyAndTheSessionOpen)
{
    setMasterPassword();
    startLocked();
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_TRUE(engine.item().isProcessing);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(UnlockItem, WrongItemInThePanelIsIgnoredWithoutAMessage)
{
    startLocked();
    const QString other = services.home.write(QStringLiteral("Desktop/b.txt"));
    services.panels.confirm = [other](const PlaceRequest &) { return other; };
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_TRUE(engine.item().isProcessing);
}

TEST_F(UnlockItem, MatchingFingerUnlocksATouchIDItem)
{
    startLockedWithTouchID();
    engine.unlock();
    EXPECT_EQ(services.biometrics.reasons, QStringList{QStringLiteral("Unlock protected item")});
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.passwordPrompts, 0);
}

TEST_F(UnlockItem, MachineWithoutAReaderFailsBeforeAnyPrompt)
{
    startLockedWithTouchID();
    services.biometrics.isAvailable = false;
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::touchIDNotAvailable);
    EXPECT_TRUE(services.biometrics.reasons.isEmpty());
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, RejectedOrCancelledFingerprintFailsAuthentication)
{
    startLockedWithTouchID();
    services.biometrics.matches = false;
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    EXPECT_FALSE(engine.item().isMounted);
}

TEST_F(UnlockItem, MatchingFingerWithoutTheMarkerKeyFailsAuthentication)
{
    startLockedWithTouchID();
    services.credentials.entries.clear();
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
}

TEST_F(UnlockItem, TouchIDItemProtectedWithTheSettingDisabledUnlocksWithAnEmptyPassword)
{
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), false);
    startLockedWithTouchID();
    engine.itemPassword = QString();
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(services.biometrics.reasons.isEmpty());
}

TEST_F(UnlockItem, TouchIDItemProtectedWithTheSettingEnabledFailsUntilItIsEnabledAgain)
{
    startLockedWithTouchID();
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), false);
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), true);
    engine.unlock();
    EXPECT_TRUE(engine.item().isMounted);
}

TEST_F(UnlockItem, FolderShowsNoItemPromptAndItsPanelChoosesFiles)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    services.panels.placeRequests.clear();
    engine.unlock();
    EXPECT_EQ(engine.passwordPrompts, 0);
    ASSERT_EQ(services.panels.placeRequests.size(), 1);
    EXPECT_FALSE(services.panels.placeRequests.first().isDirectory);
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("Desktop/folder/inner.txt"))), "inner");
}

TEST_F(UnlockItem, FolderAsksForTheMasterPasswordAndThenShowsThePanel)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    setMasterPassword();
    int promptsBeforeThePanel = 0;
    services.panels.confirm = [&](const PlaceRequest &request) {
        promptsBeforeThePanel = engine.masterPrompts;
        return std::optional(request.path);
    };
    engine.unlock();
    EXPECT_EQ(promptsBeforeThePanel, 1);
    EXPECT_EQ(engine.passwordPrompts, 0);
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(UnlockItem, MissingPrivateCopyFailsBeforeThePanelAndThePlaceholderIsKept)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    services.home.write(QStringLiteral(".local/share/quillhaven/other"));
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup file exists: false")));
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup directory contents: [\"other\"]")));
}

TEST_F(UnlockItem, MissingStorageFolderIsLogged)
{
    startLocked();
    const QString storage = services.home.path(QStringLiteral(".local/share/quillhaven"));
    ASSERT_TRUE(QDir(storage).removeRecursively());
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup directory does not exist: ") + storage));
}

TEST_F(UnlockItem, StorageDirectoryThatCannotBeListedIsLoggedWithTheReason)
{
    startLocked();
    const QString storage = services.home.path(QStringLiteral(".local/share/quillhaven"));
    ASSERT_TRUE(QDir(storage).removeRecursively());
    services.home.write(QStringLiteral(".local/share/quillhaven"), "a file in its place");
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    const QString reason = FileError::fromErrno(ENOTDIR, FileError::Action::List, storage).errorDescription();
    EXPECT_EQ(log.lines().last(), QStringLiteral("📍 DEBUG: Could not list backup directory: ") + reason);
    EXPECT_FALSE(engine.item().isMounted);
}

TEST_F(UnlockItem, PlaceOfADeletedPlaceholderCanBeConfirmedAndTheItemUnlocks)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(path));
    engine.unlock();
    EXPECT_EQ(services.panels.placeRequests.size(), 1);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(log.contains(QStringLiteral("🗑️ Removed placeholder file")));
}

TEST_F(UnlockItem, MissingFolderOfTheItemIsReportedAndTheItemStaysLocked)
{
    startLocked();
    const QString folder = services.home.path(QStringLiteral("Desktop"));
    ASSERT_TRUE(QDir(folder).removeRecursively());
    EXPECT_THROW(engine.unlock(), FileError);
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    ASSERT_TRUE(QDir().mkpath(folder));
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(UnlockItem, PlaceholderThatCannotBeRemovedLeavesTheItemLocked)
{
    startLocked();
    hooks.before = failing("removeItem", EACCES);
    EXPECT_THROW(engine.unlock(), FileError);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(UnlockItem, FailedMoveLeavesTheDataInStorageAndNothingAtThePlace)
{
    startLocked();
    hooks.before = failing("moveItem", EIO);
    EXPECT_THROW(engine.unlock(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, CancelledMasterPromptChangesNothing)
{
    startLocked();
    runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
    engine.unlock();
    EXPECT_EQ(engine.masterPrompts, 1);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, ManyCyclesKeepTheNameAndTheContainer)
{
    startLocked();
    const QString storage = engine.item().originalBackupPath;
    const QByteArray container = TemporaryHome::read(engine.item().containerPath);
    for (int i = 0; i < 5; ++i) {
        engine.unlock();
        EXPECT_EQ(TemporaryHome::read(path), "mine");
        engine.lock();
        EXPECT_EQ(TemporaryHome::read(storage), "mine");
        EXPECT_EQ(TemporaryHome::read(engine.item().containerPath), container);
    }
}

TEST_F(UnlockItem, FailureLeavesTheMasterSessionOpen)
{
    startLocked();
    engine.openMasterSession();
    engine.itemPassword = QStringLiteral("Abcdefg2");
    EXPECT_THROW(engine.unlock(), QuillhavenError);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_TRUE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(UnlockItem, SuccessEndsTheMasterSession)
{
    startLocked();
    engine.openMasterSession();
    engine.unlock();
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(UnlockItem, BulkCoreRestoresWithoutGateOrFlags)
{
    startLocked();
    engine.openMasterSession();
    runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems());
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(engine.item().mountedPath, path);
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(UnlockItem, BulkCoreWithACancelledPasswordChangesNoFlag)
{
    startLocked();
    engine.itemPassword.reset();
    runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, UnlockThatAnotherOneHasOvertakenSucceedsAndKeepsTheData)
{
    startLocked();
    services.panels.confirm = [&](const PlaceRequest &) {
        // A bulk unlock completes while the panel of the other one is open.
        runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
        return std::optional(path);
    };
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, BulkCoreWithoutAPrivateCopyFailsAndKeepsThePlaceholder)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([&] { runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path)); }),
              QuillhavenError::itemNotFound);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}
