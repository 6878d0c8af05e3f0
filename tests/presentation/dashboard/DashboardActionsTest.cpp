// SPDX-License-Identifier: GPL-3.0-or-later

#include "DashboardHarness.h"

#include "catalogue/QuillhavenError.h"
#include "platform/FileError.h"
#include "settings/Settings.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

using namespace std::chrono_literals;

class DashboardActions : public DashboardTest
{
protected:
    QString writePaper(const QString &name) { return services.home.write(QStringLiteral("papers/") + name); }

    /// Presses "Protect New Item", and chooses this path in the panel.
    void protectByPanel(const QString &path)
    {
        DashboardHarness &harness = started();
        services.panels.answer = [path](const OpenPanelRequest &) { return path; };
        harness.dashboard.protecting()->protectNewItem();
        DashboardHarness::settle();
    }
};

} // namespace

TEST_F(DashboardActions, PanelOffersFilesAndFoldersAndLeadsToTheMethods)
{
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    ASSERT_EQ(services.panels.requests.size(), 1);
    EXPECT_TRUE(services.panels.requests.constFirst().canChooseFiles);
    EXPECT_TRUE(services.panels.requests.constFirst().canChooseDirectories);
    EXPECT_TRUE(started().protectionMethodDialog.isPresented());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect will.pdf"));
    EXPECT_FALSE(started().dashboard.protecting()->showingFilePicker());
}

TEST_F(DashboardActions, CancelledPanelShowsNothing)
{
    services.panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    started().dashboard.protecting()->protectNewItem();
    DashboardHarness::settle();
    EXPECT_EQ(services.panels.requests.size(), 1);
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    EXPECT_FALSE(started().dashboard.showingError());
    EXPECT_FALSE(started().dashboard.protecting()->showingFilePicker());
}

TEST_F(DashboardActions, FailingPanelShowsTheReason)
{
    services.panels.answer = [](const OpenPanelRequest &) -> std::optional<QString> {
        throw FileError(FileError::Kind::NotAFileOrFolder, QStringLiteral("“pipe” is neither a file nor a folder."));
    };
    started().dashboard.protecting()->protectNewItem();
    DashboardHarness::settle();
    EXPECT_TRUE(started().dashboard.showingError());
    EXPECT_EQ(started().dashboard.errorMessage(), QStringLiteral("“pipe” is neither a file nor a folder."));
    EXPECT_EQ(started().dashboard.errorDialogManager()->errorTitle(), QStringLiteral("Error"));
    EXPECT_FALSE(started().dashboard.protecting()->showingFilePicker());
}

TEST_F(DashboardActions, SecondPressWhileThePanelIsOpenIsIgnored)
{
    DashboardHarness &harness = started();
    harness.dashboard.protecting()->protectNewItem();
    EXPECT_TRUE(harness.dashboard.protecting()->showingFilePicker());
    harness.dashboard.protecting()->protectNewItem();
    DashboardHarness::settle();
    EXPECT_EQ(services.panels.requests.size(), 1);
}

TEST_F(DashboardActions, RejectedItemShowsTheReasonAndNoDialog)
{
    protectByPanel(services.home.path(QStringLiteral("papers/absent.txt")));
    EXPECT_TRUE(started().dashboard.showingError());
    EXPECT_EQ(started().dashboard.errorMessage(), QStringLiteral("File or folder does not exist"));
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(DashboardActions, ProtectByPasswordFromThePanelToTheRecord)
{
    const QString path = writePaper(QStringLiteral("will.pdf"));
    protectByPanel(path);
    started().choosePassword();
    EXPECT_TRUE(started().passwordDialog.isPresented());
    EXPECT_EQ(started().passwordDialog.title(), QStringLiteral("Set Protection"));
    EXPECT_EQ(started().passwordDialog.message(), QStringLiteral("Enter a password to protect this item:"));
    EXPECT_TRUE(started().passwordDialog.requiresConfirmation());
    QSignalSpy named(&started().dashboard, &DashboardViewModel::activityTextChanged);
    started().typePassword(strongPassword);
    ASSERT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_EQ(started().item().originalPath, path);
    EXPECT_FALSE(started().item().useTouchID);
    EXPECT_FALSE(started().dashboard.showingError());
    EXPECT_TRUE(services.credentials.entries.values().contains(strongPassword.toUtf8()));
    EXPECT_EQ(named.size(), 2) << "named only while it was running";
    EXPECT_EQ(started().dashboard.activityText(), QString());
}

TEST_F(DashboardActions, WindowNamesWhatIsBeingProtected)
{
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    QStringList texts;
    DashboardViewModel &dashboard = started().dashboard;
    QObject::connect(&dashboard, &DashboardViewModel::activityTextChanged, &dashboard,
                     [&] { texts.append(dashboard.activityText()); });
    started().chooseTouchID();
    EXPECT_EQ(texts, (QStringList{QStringLiteral("Protecting “will.pdf”…"), QString()}));
}

TEST_F(DashboardActions, WindowCountsSeveralThatAreBeingProtected)
{
    DashboardViewModel &dashboard = started().dashboard;
    QStringList texts;
    QObject::connect(&dashboard, &DashboardViewModel::activityTextChanged, &dashboard,
                     [&] { texts.append(dashboard.activityText()); });
    dashboard.protecting()->showPasswordDialog(writePaper(QStringLiteral("one.pdf")), true);
    dashboard.protecting()->showPasswordDialog(writePaper(QStringLiteral("two.pdf")), true);
    DashboardHarness::settle();
    EXPECT_TRUE(texts.contains(QStringLiteral("Protecting 2 items…"))) << qUtf8Printable(texts.join(QLatin1Char('|')));
    EXPECT_EQ(texts.constLast(), QString());
    EXPECT_EQ(started().manager.protectedItems().size(), 2);
}

TEST_F(DashboardActions, TouchIDCardProtectsWithoutAPasswordDialogAndLogs)
{
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    started().chooseTouchID();
    ASSERT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_TRUE(started().item().useTouchID);
    EXPECT_FALSE(started().passwordDialog.isPresented());
    EXPECT_TRUE(log.contains(QStringLiteral("✅ Protected with Touch ID: will.pdf")));
    EXPECT_EQ(services.credentials.entries.keys(), QStringList{started().item().id + QStringLiteral("_touchid")});
}

TEST_F(DashboardActions, TouchIDCardStoresAnEmptyPasswordWhileTouchIDIsOff)
{
    services.defaults.standard().setBool(settings::enableTouchID.key, false);
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    started().chooseTouchID();
    ASSERT_EQ(started().manager.protectedItems().size(), 1);
    EXPECT_EQ(services.credentials.entries, (QMap<QString, QByteArray>{{started().item().id, ""}}));
}

TEST_F(DashboardActions, CancelledGuardShowsNoDialog)
{
    storeMasterPassword();
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(DashboardActions, CancelInTheMethodDialogEndsTheSession)
{
    storeMasterPassword();
    protectByPanel(writePaper(QStringLiteral("will.pdf")));
    started().typeMasterPassword(theMasterPassword);
    ASSERT_TRUE(started().protectionMethodDialog.isPresented());
    ASSERT_TRUE(started().masterPassword.isAuthenticated());
    started().cancelMethod();
    EXPECT_FALSE(started().masterPassword.isAuthenticated());
    EXPECT_FALSE(started().masterPassword.hasAuthenticationTimer());
}

TEST_F(DashboardActions, AfterCancellingThePasswordDialogTheMasterPasswordIsNeededAgain)
{
    storeMasterPassword();
    const QString path = writePaper(QStringLiteral("will.pdf"));
    protectByPanel(path);
    started().typeMasterPassword(theMasterPassword);
    started().choosePassword();
    started().passwordInput.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(started().masterPassword.isAuthenticated());
    started().dashboard.protecting()->showProtectionDialog(path);
    DashboardHarness::settle();
    EXPECT_TRUE(started().masterPasswordDialog.isPresented());
    EXPECT_TRUE(services.home.exists(path));
    started().masterPasswordDialog.cancel();
}

TEST_F(DashboardActions, EngineErrorIsShownInTheErrorDialog)
{
    const QString path = writePaper(QStringLiteral("will.pdf"));
    protectByPanel(path);
    started().choosePassword();
    services.fileManager.removeItem(path);
    started().typePassword(strongPassword);
    EXPECT_TRUE(started().dashboard.showingError());
    EXPECT_EQ(started().dashboard.errorMessage(), QuillhavenError(QuillhavenError::itemNotFound).errorDescription());
    EXPECT_EQ(started().dashboard.errorDialogManager()->errorMessage(), started().dashboard.errorMessage());
    EXPECT_EQ(started().dashboard.activityText(), QString());
    started().dashboard.errorDialogManager()->hideError();
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(DashboardActions, CancelledAuthenticationIsOnlyLogged)
{
    services.panels.answer = [](const OpenPanelRequest &) -> std::optional<QString> {
        throw QuillhavenError(QuillhavenError::authenticationCancelled);
    };
    started().dashboard.protecting()->protectNewItem();
    DashboardHarness::settle();
    EXPECT_TRUE(log.contains(QStringLiteral("Authentication cancelled by user")));
    EXPECT_FALSE(started().dashboard.showingError());
}

TEST_F(DashboardActions, TroubleshootingShowsTheHintOfTheCurrentError)
{
    protectByPanel(services.home.path(QStringLiteral("papers/absent.txt")));
    EXPECT_FALSE(started().dashboard.errorDialogManager()->showTroubleshooting());
    services.panels.answer = [](const OpenPanelRequest &) -> std::optional<QString> {
        throw QuillhavenError(QuillhavenError::itemNotFound);
    };
    started().dashboard.protecting()->protectNewItem();
    DashboardHarness::settle();
    ErrorDialogManager &error = *started().dashboard.errorDialogManager();
    ASSERT_TRUE(error.showTroubleshooting()) << "the second error replaces the first";
    const QString hint = error.troubleshootingMessage();
    error.showDefaultTroubleshooting(&started().confirmationDialog);
    EXPECT_TRUE(started().confirmationDialog.isPresented());
    EXPECT_EQ(started().confirmationDialog.message(), hint);
    EXPECT_TRUE(started().dashboard.showingError());
}

TEST_F(DashboardActions, ToggleLocksAnUnlockedItemAndUnlocksALockedOne)
{
    const QString path = writePaper(QStringLiteral("album/one.jpg"));
    DashboardHarness &harness = started();
    harness.protect(services.home.path(QStringLiteral("papers/album")));
    const QString id = harness.item().id;
    harness.dashboard.itemActions()->onToggleLock(id);
    DashboardHarness::settle();
    EXPECT_TRUE(harness.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    harness.dashboard.itemActions()->onToggleLock(id);
    DashboardHarness::settle();
    EXPECT_FALSE(harness.item().isMounted);
    EXPECT_FALSE(TemporaryHome::exists(path));
    EXPECT_FALSE(harness.dashboard.showingError());
}

TEST_F(DashboardActions, RowIsBusyOnlyWhileItsJobWaitsForTheUser)
{
    DashboardHarness &harness = started();
    harness.protect(writePaper(QStringLiteral("will.pdf")));
    const QString id = harness.item().id;
    harness.dashboard.itemActions()->onToggleLock(id);
    DashboardHarness::settle();
    ASSERT_TRUE(harness.passwordDialog.isPresented());
    EXPECT_TRUE(harness.dashboard.rows().isBusy(id));
    harness.passwordInput.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(harness.dashboard.rows().isBusy(id));
    EXPECT_TRUE(harness.item().isProcessing) << "the record's own flag remains set after a cancelled unlock";
    EXPECT_FALSE(harness.dashboard.showingError());
}

TEST_F(DashboardActions, DoublePressStartsOneJob)
{
    DashboardHarness &harness = started();
    const QString path = writePaper(QStringLiteral("album/one.jpg"));
    harness.protect(services.home.path(QStringLiteral("papers/album")));
    harness.dashboard.itemActions()->onToggleLock(harness.item().id);
    harness.dashboard.itemActions()->onToggleLock(harness.item().id);
    DashboardHarness::settle();
    EXPECT_TRUE(harness.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    EXPECT_EQ(log.lines().filter(QStringLiteral("🔓 Unlocking: ")).size(), 1);
    EXPECT_FALSE(harness.dashboard.showingError());
}

TEST_F(DashboardActions, ItemLockedMeanwhileIsNotLockedASecondTime)
{
    DashboardHarness &harness = started();
    const QString path = writePaper(QStringLiteral("album/one.jpg"));
    harness.protect(services.home.path(QStringLiteral("papers/album")));
    runTask(harness.manager.unlockItem(harness.item()));
    runTask(harness.masterPassword.setMasterPassword(theMasterPassword));

    harness.dashboard.itemActions()->onToggleLock(harness.item().id);
    DashboardHarness::settle();
    ASSERT_TRUE(harness.masterPasswordDialog.isPresented());
    // The item is locked elsewhere, in a session of its own, while the question is still open.
    EXPECT_TRUE(runTask(harness.masterPassword.authenticate(theMasterPassword)));
    runTask(harness.manager.lockItem(harness.item()));
    ASSERT_FALSE(harness.item().isMounted);
    harness.typeMasterPassword(theMasterPassword);

    EXPECT_TRUE(TemporaryHome::exists(harness.item().originalBackupPath + QStringLiteral("/one.jpg")));
    EXPECT_FALSE(TemporaryHome::exists(path));
}

TEST_F(DashboardActions, WrongItemPasswordIsShownInTheErrorDialog)
{
    DashboardHarness &harness = started();
    harness.protect(writePaper(QStringLiteral("will.pdf")));
    harness.dashboard.itemActions()->onToggleLock(harness.item().id);
    DashboardHarness::settle();
    harness.typePassword(QStringLiteral("wrong"));
    EXPECT_TRUE(harness.dashboard.showingError());
    EXPECT_EQ(harness.dashboard.errorMessage(),
              QuillhavenError(QuillhavenError::authenticationFailed).errorDescription());
    EXPECT_FALSE(harness.dashboard.rows().isBusy(harness.item().id));
}

TEST_F(DashboardActions, CancelledGuardOfARowEndsWithoutAMessage)
{
    DashboardHarness &harness = started();
    const QString path = writePaper(QStringLiteral("album/one.jpg"));
    harness.protect(services.home.path(QStringLiteral("papers/album")));
    runTask(harness.masterPassword.setMasterPassword(theMasterPassword));
    harness.dashboard.itemActions()->onToggleLock(harness.item().id);
    DashboardHarness::settle();
    ASSERT_TRUE(harness.masterPasswordDialog.isPresented());
    harness.masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(harness.item().isMounted);
    EXPECT_FALSE(harness.dashboard.showingError());
    EXPECT_FALSE(harness.dashboard.rows().isBusy(harness.item().id));
}

TEST_F(DashboardActions, RemovalAsksFirstAndRestoresTheItem)
{
    DashboardHarness &harness = started();
    const QString path = writePaper(QStringLiteral("will.pdf"));
    harness.protect(path);
    harness.dashboard.itemActions()->askToRemove(harness.item().id);
    RemoveProtectionDialogManager &dialog = *harness.dashboard.removeProtectionDialogManager();
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.itemName(), QStringLiteral("will.pdf"));
    EXPECT_EQ(harness.manager.protectedItems().size(), 1);
    harness.confirmRemoval();
    EXPECT_TRUE(harness.manager.protectedItems().isEmpty());
    EXPECT_EQ(harness.shownNames(), QString());
    EXPECT_EQ(TemporaryHome::read(path), QByteArray("content"));
    EXPECT_FALSE(harness.dashboard.showingError());
}

TEST_F(DashboardActions, CopiedPathIsShownForTwoSecondsAfterTheFirstCopy)
{
    DashboardHarness &harness = started();
    const QString path = writePaper(QStringLiteral("will.pdf"));
    harness.protect(path);
    const QString id = harness.item().id;
    const auto isShown = [&] {
        return harness.dashboard.items()->index(0, 0).data(ProtectedItemsModel::ShowingCopySuccessRole).toBool();
    };
    harness.dashboard.rowActions()->copyPathToClipboard(id);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), path);
    EXPECT_TRUE(isShown());
    services.clock.advance(1500ms);
    harness.dashboard.rowActions()->copyPathToClipboard(id);
    services.clock.advance(499ms);
    EXPECT_TRUE(isShown());
    services.clock.advance(1ms);
    EXPECT_FALSE(isShown()) << "a second copy does not restart the first timer";
    harness.dashboard.rowActions()->copyPathToClipboard(id);
    services.clock.advance(2s);
    EXPECT_FALSE(isShown());
}
