// SPDX-License-Identifier: GPL-3.0-or-later

#include "PreferencesHarness.h"
#include "backup/CloudFolder.h"

#include "catalogue/QuillhavenError.h"
#include "formats/RecoveryBackup.h"
#include "support/FileManagerDecorator.h"

#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class BackupSection : public DashboardTest
{
protected:
    PreferencesModel &preferences()
    {
        if (!m_preferences) {
            m_preferences.emplace(started());
        }
        return m_preferences->model;
    }
    BackupSectionModel &backup() { return *preferences().backup(); }
    RecoveryDialogManager &dialog() { return *backup().recoveryDialogManager(); }
    ConfirmationDialogManager &reported() { return preferences().confirmationDialogManager(); }
    QString error()
    {
        return preferences().errors().showingError() ? preferences().errors().errorMessage() : QString();
    }
    /// Protects one item, which is locked, with a master password and an open session.
    void protectOne()
    {
        storeMasterPassword();
        DashboardHarness &harness = started();
        EXPECT_TRUE(runTask(harness.masterPassword.authenticate(theMasterPassword)));
        harness.protect(services.home.write(QStringLiteral("papers/will.pdf"), "the will"));
    }
    void backUp()
    {
        backup().backUpNow();
        DashboardHarness::settle();
    }
    void recover(const QString &password)
    {
        backup().showRecoveryDialog();
        dialog().recover(password);
        DashboardHarness::settle();
    }

    CloudFolder cloud{services};

private:
    std::optional<PreferencesHarness> m_preferences;
};

} // namespace

TEST_F(BackupSection, AvailabilityIsCheckedOnlyOnRequest)
{
    EXPECT_FALSE(backup().isiCloudAvailable());
    cloud.make();
    EXPECT_FALSE(backup().isiCloudAvailable());
    const QSignalSpy reported(&backup(), &BackupSectionModel::folderChanged);
    backup().refresh();
    EXPECT_TRUE(backup().isiCloudAvailable());
    EXPECT_EQ(reported.size(), 1);
}

TEST_F(BackupSection, SettingIsDisabledByDefaultAndStored)
{
    EXPECT_FALSE(backup().enableiCloudBackup());
    backup().setEnableiCloudBackup(true);
    EXPECT_TRUE(backup().enableiCloudBackup());
    EXPECT_TRUE(settings::enableiCloudBackup.read(services.defaults.standard()));
}

TEST_F(BackupSection, SettingChangedElsewhereIsReported)
{
    const QSignalSpy reported(&backup(), &BackupSectionModel::enableiCloudBackupChanged);
    services.defaults.standard().setBool(QStringLiteral("another"), true);
    EXPECT_EQ(reported.size(), 0);
    cloud.setEnabled(true);
    EXPECT_EQ(reported.size(), 1);
    EXPECT_TRUE(backup().enableiCloudBackup());
}

TEST_F(BackupSection, SecondPressDoesNotBackUpAgain)
{
    cloud.make();
    protectOne();
    backup().setEnableiCloudBackup(true);
    const QSignalSpy reported(&backup(), &BackupSectionModel::isBackingUpChanged);
    backup().backUpNow();
    backup().backUpNow();
    DashboardHarness::settle();
    EXPECT_EQ(log.lines().filter(QStringLiteral("✅ All items backed up to iCloud")).size(), 1);
    EXPECT_EQ(reported.size(), 2) << "its start and its end";
    backUp();
    EXPECT_EQ(log.lines().filter(QStringLiteral("✅ All items backed up to iCloud")).size(), 2);
}

TEST_F(BackupSection, BackUpAllWritesABackupOfEachItem)
{
    cloud.make();
    protectOne();
    backup().setEnableiCloudBackup(true);
    backup().backUpNow();
    EXPECT_TRUE(backup().isBackingUp());
    EXPECT_EQ(backup().progressText(), QStringLiteral("Backing up all items…"));
    DashboardHarness::settle();
    EXPECT_FALSE(backup().isBackingUp());
    EXPECT_EQ(backup().progressText(), QString());
    EXPECT_EQ(backup().statusText(), QStringLiteral("All items are backed up."));
    EXPECT_EQ(cloud.backupNames(), QStringList(started().item().id + QStringLiteral(".backup")));
    EXPECT_EQ(error(), QString());
}

TEST_F(BackupSection, BackUpAllWithTheSettingDisabledReportsThat)
{
    cloud.make();
    protectOne();
    backUp();
    EXPECT_EQ(error(), QStringLiteral("iCloud backup is not enabled"));
    EXPECT_EQ(backup().statusText(), QString());
    EXPECT_TRUE(cloud.backupNames().isEmpty());
    EXPECT_FALSE(backup().isBackingUp());
}

TEST_F(BackupSection, RecoveryReportsHowManyFilesWereRecovered)
{
    cloud.make();
    cloud.setEnabled(true);
    protectOne();
    backUp();
    const QString folder = services.home.path(QStringLiteral("recovered"));
    QDir().mkpath(folder);
    bool wasRecovering = false;
    services.panels.answer = [&](const OpenPanelRequest &request) {
        wasRecovering = dialog().isRecovering() && dialog().isPresented();
        EXPECT_EQ(request.title, QStringLiteral("Choose Recovery Location"));
        return folder;
    };
    recover(theMasterPassword);
    EXPECT_TRUE(wasRecovering);
    EXPECT_FALSE(dialog().isRecovering());
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_EQ(TemporaryHome::read(folder + QStringLiteral("/will.pdf")), QByteArray("the will"));
    EXPECT_TRUE(reported().isPresented());
    EXPECT_EQ(reported().title(), QStringLiteral("Recovery Successful"));
    EXPECT_EQ(reported().message(), QStringLiteral("Successfully recovered 1 files to the selected folder."));
    EXPECT_EQ(reported().confirmTitle(), QStringLiteral("OK"));
    EXPECT_FALSE(reported().showCancelButton());
    EXPECT_FALSE(reported().isDestructive());
}

TEST_F(BackupSection, TwoBackupsWithOneNameAndARawCopyAreReportedAsThreeFiles)
{
    cloud.make();
    storeMasterPassword();
    cloud.writeBackup(QStringLiteral("raw"), "RECOVERY" + QByteArray(36, 's'));
    ProtectedItem item;
    item.originalName = QStringLiteral("same.txt");
    const QString source = services.home.write(QStringLiteral("papers/same.txt"));
    for (const QString &id : {QStringLiteral("one"), QStringLiteral("two")}) {
        createRecoveryBackup(services.fileManager, services.random, services.home.directories(), source,
                             cloud.backup(id), theMasterPassword, item);
    }
    const QString folder = services.home.path(QStringLiteral("recovered"));
    QDir().mkpath(folder);
    services.panels.answer = [&](const OpenPanelRequest &) { return folder; };
    recover(theMasterPassword);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files, QDir::Name),
              QStringList({QStringLiteral("raw"), QStringLiteral("same.txt")}));
    EXPECT_EQ(reported().message(), QStringLiteral("Successfully recovered 3 files to the selected folder."));
}

TEST_F(BackupSection, WrongMasterPasswordClosesTheDialogAndIsReported)
{
    cloud.writeBackup(QStringLiteral("x"), "y");
    storeMasterPassword();
    recover(QStringLiteral("Another1x"));
    EXPECT_EQ(error(), QStringLiteral("Invalid master password"));
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_FALSE(dialog().isRecovering());
}

TEST_F(BackupSection, RecoveryWithoutAFolderForBackupsIsReported)
{
    recover(theMasterPassword);
    EXPECT_EQ(error(), QStringLiteral("iCloud is not available. Please sign in to iCloud and enable iCloud Drive."));
}

TEST_F(BackupSection, DeclinedFolderIsReported)
{
    cloud.writeBackup(QStringLiteral("x"), "y");
    storeMasterPassword();
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    recover(theMasterPassword);
    EXPECT_EQ(error(), QStringLiteral("Authentication cancelled by user."));
}

TEST_F(BackupSection, CancelClosesTheRecoveryDialog)
{
    backup().showRecoveryDialog();
    ASSERT_TRUE(dialog().isPresented());
    dialog().cancel();
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_EQ(error(), QString());
}

TEST_F(BackupSection, AnUnavailableFolderIsTheFirstThingThatTheStatusSays)
{
    storeMasterPassword();
    backup().setEnableiCloudBackup(true);
    backup().checkiCloudStatus();
    EXPECT_EQ(reported().title(), QStringLiteral("iCloud Backup Status"));
    EXPECT_EQ(reported().message(),
              QStringLiteral("iCloud Status:\n\n• iCloud Available: No\n• Backup Enabled: Yes\n• Protected Items: 0\n"
                             "• Master Password: Set\n\nTo enable iCloud backup:\n1. Sign in to iCloud in System "
                             "Preferences\n2. Enable iCloud Drive\n3. Restart Quillhaven"));
    EXPECT_EQ(reported().confirmTitle(), QStringLiteral("OK"));
    EXPECT_FALSE(reported().showCancelButton());
}

TEST_F(BackupSection, TheStatusSaysThatBackupsAreOff)
{
    cloud.make();
    storeMasterPassword();
    backup().checkiCloudStatus();
    EXPECT_TRUE(reported().message().contains(QStringLiteral("• iCloud Available: Yes\n• Backup Enabled: No\n")));
    EXPECT_TRUE(reported().message().endsWith(
        QStringLiteral("\n\nEnable iCloud backup in Security settings to automatically backup your protected files.")));
}

TEST_F(BackupSection, TheStatusSaysThatThereIsNoMasterPassword)
{
    cloud.make();
    backup().setEnableiCloudBackup(true);
    backup().checkiCloudStatus();
    EXPECT_TRUE(reported().message().endsWith(QStringLiteral(
        "• Master Password: Not Set\n\nSet a master password in Security settings to enable file recovery.")));
}

TEST_F(BackupSection, TheStatusWithEverythingInOrderEndsWithACheckMark)
{
    cloud.make();
    cloud.setEnabled(true);
    protectOne();
    backup().checkiCloudStatus();
    EXPECT_TRUE(reported().message().contains(QStringLiteral("• Protected Items: 1\n")));
    EXPECT_TRUE(reported().message().endsWith(QStringLiteral(
        "iCloud backup is active! Use 'Recover Files' to restore your files with your master password. ✅")));
}

TEST_F(BackupSection, TheDescriptionOfTheSwitchDependsOnTheFolder)
{
    backup().refresh();
    EXPECT_EQ(backup().getiCloudBackupDescription(),
              QStringLiteral("iCloud is not available. Please sign in to iCloud in System Preferences."));
    cloud.make();
    backup().refresh();
    EXPECT_EQ(backup().getiCloudBackupDescription(),
              QStringLiteral("Automatically backup encrypted files to iCloud for recovery"));
}

TEST_F(BackupSection, AChosenFolderHoldsTheBackupsAtOnce)
{
    protectOne();
    const QString folder = services.home.path(QStringLiteral("synced"));
    QDir().mkpath(folder);
    services.panels.answer = [&](const OpenPanelRequest &request) {
        EXPECT_TRUE(request.canChooseDirectories);
        EXPECT_FALSE(request.canChooseFiles);
        return folder;
    };
    backup().chooseFolder();
    DashboardHarness::settle();
    EXPECT_TRUE(backup().isiCloudAvailable());
    EXPECT_EQ(backup().folder(), folder);
    EXPECT_EQ(error(), QString());
    backup().setEnableiCloudBackup(true);
    backUp();
    EXPECT_EQ(QDir(folder + QStringLiteral("/Documents/QuillhavenBackups")).entryList(QDir::Files),
              QStringList(started().item().id + QStringLiteral(".backup")));
}

TEST_F(BackupSection, AFolderInPrivateStorageIsRefusedAndTheFormerOneStays)
{
    cloud.make();
    const QString folder = services.home.path(QStringLiteral(".local/share/quillhaven/backups"));
    QDir().mkpath(folder);
    services.panels.answer = [&](const OpenPanelRequest &) { return folder; };
    backup().chooseFolder();
    DashboardHarness::settle();
    EXPECT_EQ(error(), QStringLiteral("Backups cannot be kept in \"backups\" because it belongs to Quillhaven itself. "
                                      "Choose a folder that your sync tool keeps."));
    EXPECT_TRUE(backup().isiCloudAvailable());
    EXPECT_NE(backup().folder(), folder);
}

TEST_F(BackupSection, TheHomeItselfIsRefused)
{
    services.panels.answer = [this](const OpenPanelRequest &) { return services.home.path(); };
    backup().chooseFolder();
    DashboardHarness::settle();
    EXPECT_TRUE(error().endsWith(QStringLiteral(" itself. Choose a folder that your sync tool keeps.")))
        << error().toStdString();
    EXPECT_FALSE(backup().isiCloudAvailable());
}

TEST_F(BackupSection, AFolderThatCannotBeWrittenToIsRefusedAndNamed)
{
    class ReadOnlyFolders : public FileManagerDecorator
    {
    public:
        using FileManagerDecorator::FileManagerDecorator;
        [[nodiscard]] bool isWritableFile(const QString &path) const override
        {
            return !path.endsWith(QStringLiteral("/synced")) && FileManagerDecorator::isWritableFile(path);
        }
    };
    const QString folder = services.home.path(QStringLiteral("synced"));
    QDir().mkpath(folder);
    ReadOnlyFolders files(services.fileManager);
    DashboardHarness harness(services.platform(files));
    PreferencesHarness others(harness);
    BackupSectionModel &model = *others.model.backup();
    services.panels.answer = [&](const OpenPanelRequest &) { return folder; };
    model.chooseFolder();
    DashboardHarness::settle();
    const QString sentence = QStringLiteral("Backups cannot be kept in \"synced\" because you don't have permission to "
                                            "change what is in it. Choose a folder that your sync tool keeps.");
    EXPECT_EQ(others.model.errors().errorMessage(), sentence);
    EXPECT_FALSE(model.isiCloudAvailable());
    EXPECT_EQ(model.folderProblem(), QString());

    QDir().mkpath(QFileInfo(cloud.path()).path());
    ASSERT_TRUE(QFile::link(folder, cloud.path()));
    model.refresh();
    EXPECT_TRUE(model.isiCloudAvailable());
    EXPECT_EQ(model.folderProblem(), sentence);
}

TEST_F(BackupSection, ADeclinedPanelChangesNothing)
{
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    backup().chooseFolder();
    DashboardHarness::settle();
    EXPECT_EQ(error(), QString());
    EXPECT_FALSE(backup().isiCloudAvailable());
}
