// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ProtectedFileFixture.h"

#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class RemoveProtection : public ProtectedFileTest
{
protected:
    /// The log lines of a removal, without those of the credential store.
    QStringList linesOfRemoval()
    {
        log.clear();
        engine.remove();
        QStringList lines = log.lines();
        lines.removeIf([](const QString &line) { return line.contains(QStringLiteral("KeychainManager: ")); });
        return lines;
    }
};

} // namespace

TEST_F(RemoveProtection, LockedFileReplacesItsPlaceholderAndEverythingElseIsRemoved)
{
    startLocked();
    const ProtectedItem item = engine.item();
    log.clear();
    engine.remove();

    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(TemporaryHome::exists(item.originalBackupPath));
    EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.isEmpty());
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(engine.storedItems().isEmpty());
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_EQ(services.panels.placeRequests.size(), 1);
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.mid(0, 4).join(QLatin1Char('\n')), QStringLiteral("🔓 Starting removeProtection for: a.txt\n"
                                                                      "📍 DEBUG: Item uses Touch ID: false\n"
                                                                      "📍 DEBUG: Item is folder: false\n"
                                                                      "📍 DEBUG: Item is mounted: false"));
    EXPECT_EQ(lines.last(), QStringLiteral("🎉 Protection successfully removed - file extracted to Desktop!"));
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ File already exists at original location, will replace it")));
    EXPECT_TRUE(log.contains(QStringLiteral("🗑️ Backup file automatically removed by replaceItem")));
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Successfully removed keychain credentials")));
}

TEST_F(RemoveProtection, UnlockedFileIsNotTouchedAndNeedsNoPanel)
{
    startUnlocked();
    const ProtectedItem item = engine.item();
    engine.remove();
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.count(), 0);
    EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.isEmpty());
    EXPECT_TRUE(
        log.contains(QStringLiteral("🎉 Protection successfully removed - file is already at original location!")));
}

TEST_F(RemoveProtection, LockedFolderReplacesItsPlaceholderAndNoCredentialIsTouched)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("Desktop/folder/inner.txt"))), "inner");
    EXPECT_TRUE(log.contains(QStringLiteral("📁 Skipping keychain cleanup for folder")));
    EXPECT_TRUE(log.lines().filter(QStringLiteral("KeychainManager")).isEmpty());
    EXPECT_EQ(engine.count(), 0);
}

TEST_F(RemoveProtection, MissingUnlockedFileIsReportedAndItsRecordStaysUntilTheNextStart)
{
    startUnlocked();
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_EQ(engineErrorOf([&] { engine.remove(); }), QuillhavenError::itemNotFound);
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_EQ(engine.count(), 1);
    const EngineHarness restarted(services);
    EXPECT_EQ(restarted.count(), 0) << "neither file exists any more";
}

TEST_F(RemoveProtection, DeclinedPanelChangesNothing)
{
    startLocked();
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    EXPECT_NO_THROW(engine.remove());
    EXPECT_EQ(engine.count(), 1);
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(RemoveProtection, WrongItemInThePanelChangesNothing)
{
    startLocked();
    const QString other = services.home.write(QStringLiteral("Desktop/b.txt"), "other");
    services.panels.confirm = [other](const PlaceRequest &) { return other; };
    EXPECT_NO_THROW(engine.remove());
    EXPECT_EQ(engine.count(), 1);
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(other), "other");
}

TEST_F(RemoveProtection, RemovalOfALockedFileIsLoggedInOrder)
{
    startLocked();
    const ProtectedItem item = engine.item();
    EXPECT_EQ(linesOfRemoval().join(QLatin1Char('\n')),
              QStringLiteral("🔓 Starting removeProtection for: a.txt\n"
                             "📍 DEBUG: Item uses Touch ID: false\n"
                             "📍 DEBUG: Item is folder: false\n"
                             "📍 DEBUG: Item is mounted: false\n"
                             "✅ Master password authentication successful\n"
                             "🔓 Removing protection from: a.txt\n"
                             "📁 Original path: %1\n"
                             "💾 Backup path: %2\n"
                             "📦 Container path: %3\n"
                             "📍 DEBUG: Item is locked or file not at original location, checking backup\n"
                             "📍 DEBUG: Checking if backup exists at: %2\n"
                             "📍 DEBUG: Backup directory: %4\n"
                             "📍 DEBUG: Backup directory exists: true\n"
                             "📍 DEBUG: File access granted for restoration: %1\n"
                             "📍 DEBUG: Backup file exists: true\n"
                             "📁 Restoring file to original location: %1\n"
                             "⚠️ File already exists at original location, will replace it\n"
                             "✅ File replaced at original location: %1\n"
                             "🗑️ Backup file automatically removed by replaceItem\n"
                             "🗑️ Removing container metadata file\n"
                             "🔑 Removing keychain credentials for item: %5\n"
                             "✅ Successfully removed keychain credentials\n"
                             "🎉 Protection successfully removed - file extracted to Desktop!")
                  .arg(path, item.originalBackupPath, item.containerPath, QFileInfo(item.originalBackupPath).path(),
                       item.id));
}

TEST_F(RemoveProtection, RemovalOfAnUnlockedFileIsLoggedInOrder)
{
    startUnlocked();
    const ProtectedItem item = engine.item();
    EXPECT_EQ(linesOfRemoval().mid(9).join(QLatin1Char('\n')),
              QStringLiteral("📍 DEBUG: Item is mounted - file should be at original location\n"
                             "📍 DEBUG: Checking if file exists at original path: %1\n"
                             "📍 DEBUG: File exists at original path: true\n"
                             "✅ File is already at original location, removing protection metadata only\n"
                             "🗑️ Removing container metadata file\n"
                             "🔑 Removing keychain credentials for item: %2\n"
                             "✅ Successfully removed keychain credentials\n"
                             "🎉 Protection successfully removed - file is already at original location!")
                  .arg(path, item.id));
}

TEST_F(RemoveProtection, LockedFileMovesToItsPlaceIfNoFileIsThere)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(path));
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(log.contains(QStringLiteral("✅ File moved to original location: ") + path));
    EXPECT_TRUE(log.contains(QStringLiteral("🗑️ Backup file removed by move operation")));
    EXPECT_FALSE(log.contains(QStringLiteral("⚠️ File already exists at original location, will replace it")));
}

TEST_F(RemoveProtection, FailureLeavesTheMasterSessionOpenAndSuccessEndsIt)
{
    startLocked();
    setMasterPassword();
    const QString backup = engine.item().originalBackupPath;
    ASSERT_TRUE(QFile::rename(backup, backup + QStringLiteral(".away")));
    EXPECT_EQ(engineErrorOf([&] { engine.remove(); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());

    ASSERT_TRUE(QFile::rename(backup + QStringLiteral(".away"), backup));
    engine.remove();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(RemoveProtection, MissingPrivateCopyFailsAndKeepsPlaceholderAndRecord)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    const QString backup = engine.item().originalBackupPath;
    EXPECT_EQ(engineErrorOf([&] { engine.remove(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(engine.count(), 1);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_TRUE(log.contains(QStringLiteral("⚠️ Warning: Backup file not found at ") + backup));
    EXPECT_TRUE(
        log.contains(QStringLiteral("❌ Error removing protection: The selected file or folder could not be found.")));
    EXPECT_FALSE(engine.manager.isProcessing());
}

TEST_F(RemoveProtection, PlaceholderThatCannotBeReplacedIsReportedAsInUse)
{
    startLocked();
    hooks.before = failing("replaceItemAt", EBUSY);
    QString text;
    EXPECT_EQ(engineErrorOf([&] { engine.remove(); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("Could not restore file to original location. The existing file may be in use by "
                                   "another application. Please close any applications using this file and try "
                                   "again."));
    const QString reason = FileError::fromErrno(EBUSY, FileError::Action::Replace, path).errorDescription();
    const QStringList lines = log.lines();
    EXPECT_EQ(lines.mid(lines.size() - 3),
              QStringList({QStringLiteral("⚠️ File already exists at original location, will replace it"),
                           QStringLiteral("❌ Could not replace file: ") + reason,
                           QStringLiteral("❌ Error removing protection: ") + text}));
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(RemoveProtection, ContainerThatCannotBeRemovedIsLoggedAndKept)
{
    startLocked();
    const QString container = engine.item().containerPath;
    hooks.before = failing("removeItem", EACCES, {container});
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(TemporaryHome::exists(container));
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(log.lines().filter(QStringLiteral("⚠️ Could not remove container file: ")).size() == 1);
}

TEST_F(RemoveProtection, CredentialsThatCannotBeRemovedAreLoggedAndKept)
{
    startLocked();
    services.credentials.failWith = credentialInteractionNotAllowed;
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(log.contains(
        QStringLiteral("⚠️ Could not remove keychain credentials: Failed to delete from keychain: -25308")));
}

TEST_F(RemoveProtection, SharedContainerIsRemovedWithTheFirstItemAndTheSecondSucceeds)
{
    engine.protect(services.home.write(QStringLiteral("a/report.pdf"), "first"));
    engine.protect(services.home.write(QStringLiteral("b/report.pdf"), "second"));
    const QString container = engine.item().containerPath;
    engine.remove(0);
    EXPECT_FALSE(TemporaryHome::exists(container));
    engine.remove(0);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("b/report.pdf"))), "second");
}

TEST_F(RemoveProtection, CancelledMasterPromptIsLoggedAndChangesNothing)
{
    startLocked();
    runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
    engine.remove();
    EXPECT_EQ(engine.count(), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("❌ Master password authentication cancelled")));
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(RemoveProtection, NoItemPasswordIsAskedFor)
{
    startLocked();
    engine.remove();
    EXPECT_EQ(engine.passwordPrompts, 0);
}

TEST_F(RemoveProtection, BulkCoreRestoresALockedItemSilently)
{
    startLocked();
    const ProtectedItem item = engine.item();
    engine.openMasterSession();
    log.clear();
    runTask(engine.manager.removeProtectionWithAccessibleURL(item, path));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(engine.storedItems().isEmpty());
    EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
    EXPECT_EQ(services.credentials.entries.keys(), QStringList{QStringLiteral("master_password")});
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_TRUE(log.lines().filter(QStringLiteral("DEBUG")).isEmpty());
}

TEST_F(RemoveProtection, BulkCoreRethrowsAReplacementError)
{
    startLocked();
    hooks.before = failing("replaceItemAt", EBUSY);
    EXPECT_THROW(runTask(engine.manager.removeProtectionWithAccessibleURL(engine.item(), path)), FileError);
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(RemoveProtection, BulkCoreWithoutAPrivateCopyFails)
{
    startLocked();
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([&] { runTask(engine.manager.removeProtectionWithAccessibleURL(engine.item(), path)); }),
              QuillhavenError::itemNotFound);
}

TEST_F(RemoveProtection, BulkCoreLeavesAnUnlockedItemAtItsPlace)
{
    startUnlocked();
    const ProtectedItem item = engine.item();
    runTask(engine.manager.removeProtectionWithAccessibleURL(item, path));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.count(), 0);
    EXPECT_FALSE(TemporaryHome::exists(item.containerPath));
    EXPECT_TRUE(services.credentials.entries.isEmpty());
}

TEST_F(RemoveProtection, FlagIsSetWhileThePanelIsOpen)
{
    startLocked();
    EngineHarness restarted(services);
    bool wasSet = restarted.manager.isProcessing();
    ASSERT_FALSE(wasSet);
    services.panels.confirm = [&](const PlaceRequest &) {
        wasSet = restarted.manager.isProcessing();
        return std::nullopt;
    };
    EXPECT_NO_THROW(restarted.remove());
    EXPECT_TRUE(wasSet);
    EXPECT_FALSE(restarted.manager.isProcessing());
}
