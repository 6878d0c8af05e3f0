// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"
#include "backup/CloudFolder.h"

#include "catalogue/QuillhavenError.h"
#include "formats/RecoveryBackup.h"

#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class Backups : public DashboardTest
{
protected:
    BackupActions &backup() { return *started().dashboard.backup(); }
    RecoveryDialogManager &dialog() { return *backup().recoveryDialogManager(); }
    QString error() { return started().dashboard.showingError() ? started().dashboard.errorMessage() : QString(); }
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
        backup().backUpAll();
        DashboardHarness::settle();
    }
    void recover(const QString &password)
    {
        backup().showRecoveryDialog();
        dialog().recover(password);
        DashboardHarness::settle();
    }

    CloudFolder cloud{services};
};

} // namespace

TEST_F(Backups, AvailabilityIsCheckedOnlyOnRequest)
{
    EXPECT_FALSE(backup().isAvailable());
    cloud.make();
    EXPECT_FALSE(backup().isAvailable());
    const QSignalSpy reported(&backup(), &BackupActions::isAvailableChanged);
    backup().refresh();
    EXPECT_TRUE(backup().isAvailable());
    EXPECT_EQ(reported.size(), 1);
}

TEST_F(Backups, SettingIsDisabledByDefaultAndStored)
{
    EXPECT_FALSE(backup().enableiCloudBackup());
    backup().setEnableiCloudBackup(true);
    EXPECT_TRUE(backup().enableiCloudBackup());
    EXPECT_TRUE(settings::enableiCloudBackup.read(services.defaults.standard()));
}

TEST_F(Backups, SettingChangedElsewhereIsReported)
{
    const QSignalSpy reported(&backup(), &BackupActions::enableiCloudBackupChanged);
    services.defaults.standard().setBool(QStringLiteral("another"), true);
    EXPECT_EQ(reported.size(), 0);
    cloud.setEnabled(true);
    EXPECT_EQ(reported.size(), 1);
    EXPECT_TRUE(backup().enableiCloudBackup());
}

TEST_F(Backups, SecondPressDoesNotBackUpAgain)
{
    cloud.make();
    protectOne();
    backup().setEnableiCloudBackup(true);
    const QSignalSpy reported(&backup(), &BackupActions::isBackingUpChanged);
    backup().backUpAll();
    backup().backUpAll();
    DashboardHarness::settle();
    EXPECT_EQ(log.lines().filter(QStringLiteral("✅ All items backed up to iCloud")).size(), 1);
    EXPECT_EQ(reported.size(), 2) << "its start and its end";
    backUp();
    EXPECT_EQ(log.lines().filter(QStringLiteral("✅ All items backed up to iCloud")).size(), 2);
}

TEST_F(Backups, BackUpAllWritesABackupOfEachItem)
{
    cloud.make();
    protectOne();
    backup().setEnableiCloudBackup(true);
    backup().backUpAll();
    EXPECT_TRUE(backup().isBackingUp());
    EXPECT_EQ(started().dashboard.activityText(), QStringLiteral("Backing up all items…"));
    DashboardHarness::settle();
    EXPECT_FALSE(backup().isBackingUp());
    EXPECT_EQ(started().dashboard.activityText(), QString());
    EXPECT_EQ(cloud.backupNames(), QStringList(started().item().id + QStringLiteral(".backup")));
    EXPECT_EQ(error(), QString());
}

TEST_F(Backups, BackUpAllWithTheSettingDisabledReportsThat)
{
    cloud.make();
    protectOne();
    backUp();
    EXPECT_EQ(error(), QStringLiteral("iCloud backup is not enabled"));
    EXPECT_TRUE(cloud.backupNames().isEmpty());
    EXPECT_FALSE(backup().isBackingUp());
}

TEST_F(Backups, RecoveryReportsHowManyFilesWereRecovered)
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
    started().askSomethingElse(true, true);
    recover(theMasterPassword);
    EXPECT_TRUE(wasRecovering);
    EXPECT_FALSE(dialog().isRecovering());
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_EQ(TemporaryHome::read(folder + QStringLiteral("/will.pdf")), QByteArray("the will"));
    ConfirmationDialogManager &reported = started().confirmationDialog;
    EXPECT_TRUE(reported.isPresented());
    EXPECT_EQ(reported.title(), QStringLiteral("Recovery Successful"));
    EXPECT_EQ(reported.message(), QStringLiteral("Successfully recovered 1 files to the selected folder."));
    EXPECT_EQ(reported.confirmTitle(), QStringLiteral("OK"));
    EXPECT_FALSE(reported.showCancelButton());
    EXPECT_FALSE(reported.isDestructive());
    reported.confirm();
    reported.cancel();
    EXPECT_EQ(started().strayAnswers, 0) << "the dialog asks no question";
}

TEST_F(Backups, TwoBackupsWithOneNameAndARawCopyAreReportedAsThreeFiles)
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
    EXPECT_EQ(started().confirmationDialog.message(),
              QStringLiteral("Successfully recovered 3 files to the selected folder."));
}

TEST_F(Backups, WrongMasterPasswordClosesTheDialogAndIsReported)
{
    cloud.writeBackup(QStringLiteral("x"), "y");
    storeMasterPassword();
    recover(QStringLiteral("Another1x"));
    EXPECT_EQ(error(), QStringLiteral("Invalid master password"));
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_FALSE(dialog().isRecovering());
}

TEST_F(Backups, RecoveryWithoutAFolderForBackupsIsReported)
{
    recover(theMasterPassword);
    EXPECT_EQ(error(), QStringLiteral("iCloud is not available. Please sign in to iCloud and enable iCloud Drive."));
}

TEST_F(Backups, DeclinedFolderIsReported)
{
    cloud.writeBackup(QStringLiteral("x"), "y");
    storeMasterPassword();
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    recover(theMasterPassword);
    EXPECT_EQ(error(), QStringLiteral("Authentication cancelled by user."));
}

TEST_F(Backups, CancelClosesTheRecoveryDialog)
{
    backup().showRecoveryDialog();
    ASSERT_TRUE(dialog().isPresented());
    dialog().cancel();
    EXPECT_FALSE(dialog().isPresented());
    EXPECT_EQ(error(), QString());
}
