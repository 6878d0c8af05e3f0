#include "engine/PlaceholderFile.h"
#include "platform/FileManagerDecorator.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

class UnlockItem : public ::testing::Test
{
protected:
    QString lockedFile(EngineHarness &engine, bool useTouchID = false)
    {
        const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
        engine.protect(path, useTouchID ? QString() : QStringLiteral("Abcdefg1"), useTouchID);
        services.panels.requests.clear();
        return path;
    }

    TestPlatform services;
    LogCapture log;
};

class FailingCalls : public FileManagerDecorator
{
public:
    using FileManagerDecorator::FileManagerDecorator;
    void moveItem(const QString &source, const QString &target) override
    {
        if (failsMoves) {
            throw FileError::fromErrno(EIO, FileError::Action::Move, source, target);
        }
        FileManagerDecorator::moveItem(source, target);
    }
    void removeItem(const QString &path) override
    {
        if (failsRemovals) {
            throw FileError::fromErrno(EACCES, FileError::Action::Remove, path);
        }
        FileManagerDecorator::removeItem(path);
    }

    bool failsMoves = false;
    bool failsRemovals = false;
};

} // namespace

TEST_F(UnlockItem, RightPasswordBringsTheDataBackToItsPlace)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
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
    EngineHarness engine(services);
    lockedFile(engine);
    QStringList texts;
    QObject::connect(&engine.passwordDialog, &PasswordInputDialogManager::changed, &engine.manager, [&] {
        if (engine.passwordDialog.isPresented()) {
            texts << engine.passwordDialog.title() << engine.passwordDialog.message();
            EXPECT_FALSE(engine.passwordDialog.requiresConfirmation());
        }
    });
    engine.unlock();
    EXPECT_EQ(texts.mid(0, 2).join(QLatin1Char('|')),
              QStringLiteral("Password Required|Enter the password for 'a.txt':"));
}

TEST_F(UnlockItem, WrongPasswordFailsAndStaysLocked)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    engine.itemPassword = QStringLiteral("Abcdefg2");
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_TRUE(services.panels.requests.isEmpty());
    EXPECT_EQ(engine.passwordPrompts, 1) << "one attempt for each call";
}

TEST_F(UnlockItem, MissingCredentialReadsAsAWrongPassword)
{
    EngineHarness engine(services);
    lockedFile(engine);
    services.credentials.entries.clear();
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
}

TEST_F(UnlockItem, CancelledPasswordDialogEndsQuietlyLeavesTheRecordBusyAndEndsTheSession)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    lockedFile(engine);
    engine.itemPassword.reset();
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_TRUE(engine.item().isProcessing);
    EXPECT_FALSE(engine.manager.isProcessing());
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(UnlockItem, DeclinedPanelEndsQuietlyLeavesTheRecordBusyAndTheSessionOpen)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    const QString path = lockedFile(engine);
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_TRUE(engine.item().isProcessing);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(UnlockItem, WrongItemInThePanelIsDroppedWithoutAWord)
{
    EngineHarness engine(services);
    lockedFile(engine);
    const QString other = services.home.write(QStringLiteral("Desktop/b.txt"));
    services.panels.answer = [other](const OpenPanelRequest &) { return other; };
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_TRUE(engine.item().isProcessing);
}

TEST_F(UnlockItem, MatchingFingerUnlocksATouchIDItem)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine, true);
    engine.unlock();
    EXPECT_EQ(services.biometrics.reasons, QStringList{QStringLiteral("Unlock protected item")});
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(engine.passwordPrompts, 0);
}

TEST_F(UnlockItem, MachineWithoutAReaderFailsBeforeAnyPrompt)
{
    EngineHarness engine(services);
    lockedFile(engine, true);
    services.biometrics.isAvailable = false;
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::touchIDNotAvailable);
    EXPECT_TRUE(services.biometrics.reasons.isEmpty());
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, RefusedOrCancelledFingerFailsAuthentication)
{
    EngineHarness engine(services);
    lockedFile(engine, true);
    services.biometrics.matches = false;
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    EXPECT_FALSE(engine.item().isMounted);
}

TEST_F(UnlockItem, MatchingFingerWithTheMarkerKeyGoneFailsAuthentication)
{
    EngineHarness engine(services);
    lockedFile(engine, true);
    services.credentials.entries.clear();
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
}

TEST_F(UnlockItem, TouchIDItemProtectedWithTheSettingOffPassesWithAnEmptyPassword)
{
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), false);
    EngineHarness engine(services);
    const QString path = lockedFile(engine, true);
    engine.itemPassword = QString();
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(services.biometrics.reasons.isEmpty());
}

TEST_F(UnlockItem, TouchIDItemProtectedWithTheSettingOnFailsUntilItIsOnAgain)
{
    EngineHarness engine(services);
    lockedFile(engine, true);
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), false);
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::authenticationFailed);
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), true);
    engine.unlock();
    EXPECT_TRUE(engine.item().isMounted);
}

TEST_F(UnlockItem, FolderShowsNoItemPromptAndItsPanelChoosesFiles)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    services.panels.requests.clear();
    engine.unlock();
    EXPECT_EQ(engine.passwordPrompts, 0);
    ASSERT_EQ(services.panels.requests.size(), 1);
    EXPECT_TRUE(services.panels.requests.first().canChooseFiles);
    EXPECT_FALSE(services.panels.requests.first().canChooseDirectories);
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("Desktop/folder/inner.txt"))), "inner");
}

TEST_F(UnlockItem, FolderAsksForTheMasterPasswordAndThenShowsThePanel)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));
    runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
    engine.masterPasswordEntry = QStringLiteral("Master12");
    int promptsBeforeThePanel = 0;
    services.panels.answer = [&](const OpenPanelRequest &request) {
        promptsBeforeThePanel = engine.masterPrompts;
        return std::optional(request.directory + QLatin1Char('/') + request.preselected);
    };
    engine.unlock();
    EXPECT_EQ(promptsBeforeThePanel, 1);
    EXPECT_EQ(engine.passwordPrompts, 0);
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
}

TEST_F(UnlockItem, VanishedPrivateCopyFailsBeforeThePanelAndThePlaceholderStays)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    services.home.write(QStringLiteral(".local/share/quillhaven/other"));
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(services.panels.requests.isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup file exists: false")));
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup directory contents: [\"other\"]")));
}

TEST_F(UnlockItem, VanishedStorageDirectoryIsLogged)
{
    EngineHarness engine(services);
    lockedFile(engine);
    const QString storage = services.home.path(QStringLiteral(".local/share/quillhaven"));
    ASSERT_TRUE(QDir(storage).removeRecursively());
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(log.contains(QStringLiteral("📍 DEBUG: Backup directory does not exist: ") + storage));
}

TEST_F(UnlockItem, DeletedPlaceholderCanOnlyBeDeclinedAndEndsQuietly)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    ASSERT_TRUE(QFile::remove(path));
    EXPECT_NO_THROW(engine.unlock());
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(services.panels.requests.size(), 1);
}

TEST_F(UnlockItem, PlaceholderThatCannotBeRemovedLeavesTheItemLocked)
{
    FailingCalls files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = lockedFile(engine);
    files.failsRemovals = true;
    EXPECT_THROW(engine.unlock(), FileError);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}

TEST_F(UnlockItem, FailedMoveLeavesTheDataInStorageAndNothingAtThePlace)
{
    FailingCalls files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = lockedFile(engine);
    files.failsMoves = true;
    EXPECT_THROW(engine.unlock(), FileError);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, CancelledMasterPromptChangesNothing)
{
    EngineHarness engine(services);
    lockedFile(engine);
    runTask(engine.masterPassword.setMasterPassword(QStringLiteral("Master12")));
    engine.unlock();
    EXPECT_EQ(engine.masterPrompts, 1);
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, ManyCyclesBringTheSameNameBackAndLeaveTheContainerAsItIs)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
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
    EngineHarness engine(services);
    lockedFile(engine);
    engine.openMasterSession();
    engine.itemPassword = QStringLiteral("Abcdefg2");
    EXPECT_THROW(engine.unlock(), QuillhavenError);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_TRUE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(UnlockItem, SuccessEndsTheMasterSession)
{
    EngineHarness engine(services);
    lockedFile(engine);
    engine.openMasterSession();
    engine.unlock();
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.masterPassword.hasAuthenticationTimer());
}

TEST_F(UnlockItem, BulkCoreRestoresWithoutGateOrFlags)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    engine.openMasterSession();
    runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_EQ(engine.storedItems(), engine.manager.protectedItems());
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_EQ(engine.item().mountedPath, path);
    EXPECT_TRUE(services.panels.requests.isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(UnlockItem, BulkCoreWithACancelledPasswordChangesNoFlag)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    engine.itemPassword.reset();
    runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, SecondUnlockOfOneItemFailsAndLeavesTheDataThatTheFirstBroughtBack)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    services.panels.answer = [&](const OpenPanelRequest &) {
        // A bulk unlock passes while the panel of the single one is open.
        runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path));
        return std::optional(path);
    };
    EXPECT_EQ(engineErrorOf([&] { engine.unlock(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(engine.item().isMounted);
    EXPECT_FALSE(engine.item().isProcessing);
}

TEST_F(UnlockItem, BulkCoreWithoutAPrivateCopyFailsAndKeepsThePlaceholder)
{
    EngineHarness engine(services);
    const QString path = lockedFile(engine);
    ASSERT_TRUE(QFile::remove(engine.item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([&] { runTask(engine.manager.unlockItemWithAccessibleURL(engine.item(), path)); }),
              QuillhavenError::itemNotFound);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
}
