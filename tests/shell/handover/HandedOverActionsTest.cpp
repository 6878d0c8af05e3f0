// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/handover/HandedOverActions.h"
#include "DashboardHarness.h"
#include "engine/PlaceholderFile.h"
#include "platform/NotificationCenter.h"
#include "settings/Settings.h"
#include "support/RecordingPresence.h"

#include <QProcess>

using namespace quillhaven;
using namespace quillhaven::test;
using namespace std::chrono_literals;

namespace {

/// The program's window with the hand-over, and files of the user's.
class HandedOver : public DashboardTest
{
protected:
    HandedOver()
    {
        services.home.write(QStringLiteral("a.txt"), "mine");
        presence.policy = ApplicationPresence::ActivationPolicy::Accessory;
    }
    /// Creates what there is, with these files protected.
    void start(const QStringList &protectedPaths = {})
    {
        for (const QString &wanted : protectedPaths) {
            started().protect(wanted);
        }
        DashboardHarness &window = started();
        handedOver = std::make_unique<HandedOverActions>(
            window.platform, window.manager, window.masterPassword, presence,
            HandOverDialogs{window.confirmationDialog, window.protectionMethodDialog, window.passwordDialog,
                            window.masterPasswordDialog});
        log.clear();
    }
    [[nodiscard]] UserDefaults &suite() { return *services.defaults.suite(settings::sharedSuite); }
    [[nodiscard]] double now() const { return double(services.clock.now().toMSecsSinceEpoch()) / 1000; }
    void writeRecord(const QString &action, const QString &file, const QVariant &timestamp)
    {
        settings::pendingAction.write(suite(), {{QStringLiteral("action"), action},
                                                {QStringLiteral("path"), file},
                                                {QStringLiteral("timestamp"), timestamp}});
    }
    [[nodiscard]] bool hasRecord() { return settings::pendingAction.read(suite()).has_value(); }
    /// One look, and the half second after it.
    void check()
    {
        handedOver->checkForPendingActions();
        services.clock.advance(500ms);
        DashboardHarness::settle();
    }
    void open(const QString &action, const QString &query)
    {
        handedOver->handleURLScheme(QStringLiteral("quillhaven://") + action + QStringLiteral("?path=") + query);
        DashboardHarness::settle();
    }
    void unlock(qsizetype index = 0)
    {
        RunningTask<void> unlocking(started().manager.unlockItem(started().item(index)));
        DashboardHarness::settle();
        started().typePassword(strongPassword);
        unlocking.wait();
        DashboardHarness::settle();
        log.clear();
    }
    [[nodiscard]] bool isLocked() { return holdsPlaceholder(services.fileManager, path); }

    const QString path = services.home.path(QStringLiteral("a.txt"));
    RecordingPresence presence;
    std::unique_ptr<HandedOverActions> handedOver;
};

} // namespace

TEST_F(HandedOver, ARecordIsRemovedLoggedAndCarriedOutHalfASecondLater)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, now());
    handedOver->checkForPendingActions();
    EXPECT_FALSE(hasRecord());
    EXPECT_EQ(log.lines(), QStringList{QStringLiteral("📱 Processing pending action: lock for path: ") + path});
    EXPECT_EQ(presence.policy, ApplicationPresence::ActivationPolicy::Regular);
    EXPECT_EQ(presence.activations, 1);
    services.clock.advance(499ms);
    DashboardHarness::settle();
    EXPECT_FALSE(isLocked());
    services.clock.advance(1ms);
    DashboardHarness::settle();
    EXPECT_TRUE(isLocked());
}

TEST_F(HandedOver, ARecordOfAnAgeBelowThirtySecondsIsCarriedOut)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, now() - 29.9);
    check();
    EXPECT_TRUE(isLocked());
}

TEST_F(HandedOver, ARecordOfThirtySecondsIsRemovedAndIgnored)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, now() - 30.0);
    check();
    EXPECT_FALSE(hasRecord());
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(presence.activations, 0);
}

TEST_F(HandedOver, ARecordFromTheFutureIsCarriedOut)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, now() + 3600);
    check();
    EXPECT_TRUE(isLocked());
}

TEST_F(HandedOver, ATimeInWholeSecondsIsANumberToo)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, services.clock.now().toSecsSinceEpoch());
    check();
    EXPECT_TRUE(isLocked());
}

TEST_F(HandedOver, ARecordWithoutATimeStaysForEverWithoutEffect)
{
    start({path});
    unlock();
    settings::pendingAction.write(suite(),
                                  {{QStringLiteral("action"), QStringLiteral("lock")}, {QStringLiteral("path"), path}});
    for (int second = 0; second < 100; ++second) {
        check();
    }
    EXPECT_TRUE(hasRecord());
    EXPECT_FALSE(isLocked());
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(HandedOver, ARecordWithAValueOfAnotherTypeStays)
{
    start();
    for (const QVariant &timestamp : {QVariant(QString::number(now())), QVariant(true)}) {
        writeRecord(QStringLiteral("lock"), path, timestamp);
        check();
        EXPECT_TRUE(hasRecord());
    }
    settings::pendingAction.write(
        suite(), {{QStringLiteral("action"), 3}, {QStringLiteral("path"), path}, {QStringLiteral("timestamp"), now()}});
    check();
    EXPECT_TRUE(hasRecord());
    EXPECT_EQ(presence.activations, 0);
}

TEST_F(HandedOver, AnUnknownWordInARecordIsLoggedAfterHalfASecond)
{
    start();
    writeRecord(QStringLiteral("erase"), path, now());
    handedOver->checkForPendingActions();
    services.clock.advance(499ms);
    EXPECT_EQ(log.lines().size(), 1);
    services.clock.advance(1ms);
    DashboardHarness::settle();
    EXPECT_EQ(log.lines().mid(1), QStringList{QStringLiteral("⚠️ Unknown action: erase")});
}

TEST_F(HandedOver, AnUnknownWordInAnAddressDoesNothingButActivate)
{
    start();
    open(QStringLiteral("erase"), path);
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(presence.activations, 1);
}

TEST_F(HandedOver, AnAddressOfAnotherSchemeOrWithoutAPathIsIgnored)
{
    start();
    handedOver->handleURLScheme(QStringLiteral("https://lock?path=/a"));
    handedOver->handleURLScheme(QStringLiteral("quillhaven://lock"));
    handedOver->handleURLScheme(QStringLiteral("quillhaven://show-main-window"));
    DashboardHarness::settle();
    EXPECT_EQ(presence.activations, 0);
    EXPECT_EQ(log.lines(), QStringList());
}

TEST_F(HandedOver, AnAddressIsCarriedOutWithoutADelay)
{
    start({path});
    unlock();
    open(QStringLiteral("lock"), path);
    EXPECT_TRUE(isLocked());
    EXPECT_EQ(presence.policy, ApplicationPresence::ActivationPolicy::Regular);
}

TEST_F(HandedOver, AnotherProcessWritesTheRecord)
{
    start({path});
    unlock();
    QProcess writer;
    writer.start(QStringLiteral(ACTION_WRITER),
                 {services.directories.configuration, QStringLiteral("lock"), path, QString::number(now(), 'f', 3)});
    ASSERT_TRUE(spinUntil([&] { return writer.state() == QProcess::NotRunning; }));
    ASSERT_EQ(writer.exitCode(), 0);
    check();
    EXPECT_TRUE(isLocked());
    EXPECT_FALSE(hasRecord());
}

TEST_F(HandedOver, ALaterRecordReplacesAnEarlierOne)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("shred"), path, now());
    writeRecord(QStringLiteral("lock"), path, now());
    check();
    EXPECT_TRUE(isLocked());
    EXPECT_FALSE(started().dashboard.shredding()->confirmation()->isPresented());
}

TEST_F(HandedOver, TwoLooksAtOnceCarryItOutOnce)
{
    start({path});
    unlock();
    writeRecord(QStringLiteral("lock"), path, now());
    handedOver->checkForPendingActions();
    handedOver->checkForPendingActions();
    services.clock.advance(500ms);
    DashboardHarness::settle();
    EXPECT_EQ(log.lines().filter(QStringLiteral("Processing pending action")).size(), 1);
}

TEST_F(HandedOver, AnItemThatIsNotInTheListIsNeitherLockedNorUnlocked)
{
    start();
    for (const QString &action : {QStringLiteral("lock"), QStringLiteral("unlock")}) {
        open(action, path);
        EXPECT_EQ(presence.activations, 1);
        presence.activations = 0;
    }
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_FALSE(started().confirmationDialog.isPresented());
}

TEST_F(HandedOver, UnlockAsksForThePasswordOfTheItem)
{
    start({path});
    open(QStringLiteral("unlock"), path);
    ASSERT_TRUE(started().passwordDialog.isPresented());
    EXPECT_TRUE(isLocked());
    started().typePassword(strongPassword);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(HandedOver, AFailedUnlockIsShown)
{
    start({path});
    open(QStringLiteral("unlock"), path);
    started().typePassword(QStringLiteral("wrong"));
    const ConfirmationDialogManager &dialog = started().confirmationDialog;
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Unlock Failed"));
    EXPECT_FALSE(dialog.message().isEmpty());
    EXPECT_EQ(dialog.confirmTitle(), QStringLiteral("OK"));
    EXPECT_EQ(dialog.cancelTitle(), QStringLiteral("Cancel"));
    EXPECT_FALSE(dialog.showCancelButton());
    EXPECT_FALSE(dialog.isDestructive());
}

TEST_F(HandedOver, AFailedLockIsShown)
{
    start({path});
    unlock();
    services.home.write(QStringLiteral("elsewhere"), "");
    const QString storage = services.home.path(QStringLiteral(".local/share/quillhaven"));
    ASSERT_TRUE(QDir(storage).removeRecursively());
    services.home.write(QStringLiteral(".local/share/quillhaven"), "no folder");
    open(QStringLiteral("lock"), path);
    EXPECT_TRUE(started().confirmationDialog.isPresented());
    EXPECT_EQ(started().confirmationDialog.title(), QStringLiteral("Lock Failed"));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(HandedOver, ALockedItemIsNotLockedAgain)
{
    start({path});
    const QByteArray kept = TemporaryHome::read(started().item().originalBackupPath);
    services.home.write(QStringLiteral("a.txt"), "saved over the placeholder");
    open(QStringLiteral("lock"), path);
    EXPECT_EQ(TemporaryHome::read(path), "saved over the placeholder");
    EXPECT_EQ(TemporaryHome::read(started().item().originalBackupPath), kept);
}

TEST_F(HandedOver, ProtectAsksForTheMethodAndThePassword)
{
    start();
    open(QStringLiteral("protect"), path);
    ASSERT_TRUE(started().protectionMethodDialog.isPresented());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect a.txt"));
    started().choosePassword();
    ASSERT_TRUE(started().passwordDialog.isPresented());
    EXPECT_EQ(started().passwordDialog.title(), QStringLiteral("Set Protection"));
    EXPECT_EQ(started().passwordDialog.message(), QStringLiteral("Enter a password to protect this item:"));
    started().typePassword(strongPassword);
    EXPECT_TRUE(isLocked());
    EXPECT_FALSE(started().confirmationDialog.isPresented());
}

TEST_F(HandedOver, ProtectByFingerprintAsksForAConfirmation)
{
    start();
    open(QStringLiteral("protect"), path);
    started().chooseTouchID();
    const ConfirmationDialogManager &dialog = started().confirmationDialog;
    ASSERT_TRUE(dialog.isPresented());
    EXPECT_EQ(dialog.title(), QStringLiteral("Set Protection"));
    EXPECT_EQ(dialog.message(), QStringLiteral("This item will be protected with Touch ID."));
    EXPECT_EQ(dialog.confirmTitle(), QStringLiteral("Protect"));
    EXPECT_EQ(dialog.cancelTitle(), QStringLiteral("Cancel"));
    started().confirmationDialog.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(isLocked());

    open(QStringLiteral("protect"), path);
    started().chooseTouchID();
    started().confirmationDialog.confirm();
    DashboardHarness::settle();
    EXPECT_TRUE(isLocked());
    EXPECT_TRUE(started().item().useTouchID);
}

TEST_F(HandedOver, AFailedProtectionIsShown)
{
    start({path});
    open(QStringLiteral("protect"), path);
    started().choosePassword();
    started().typePassword(strongPassword);
    EXPECT_TRUE(started().confirmationDialog.isPresented());
    EXPECT_EQ(started().confirmationDialog.title(), QStringLiteral("Protection Failed"));
    EXPECT_EQ(started().manager.protectedItems().size(), 1);
}

TEST_F(HandedOver, ProtectWithARefusedMasterPasswordAsksNothingFurther)
{
    storeMasterPassword();
    start();
    open(QStringLiteral("protect"), path);
    ASSERT_TRUE(started().masterPasswordDialog.isPresented());
    started().masterPasswordDialog.cancel();
    DashboardHarness::settle();
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
}

TEST_F(HandedOver, CancellingEitherQuestionOfAProtectionEndsTheMasterSession)
{
    storeMasterPassword();
    start();
    for (const bool atTheMethod : {true, false}) {
        open(QStringLiteral("protect"), path);
        started().typeMasterPassword(theMasterPassword);
        ASSERT_TRUE(started().masterPassword.isAuthenticated());
        if (atTheMethod) {
            started().cancelMethod();
        } else {
            started().choosePassword();
            started().passwordInput.cancel();
            DashboardHarness::settle();
        }
        EXPECT_FALSE(started().masterPassword.isAuthenticated());
        EXPECT_FALSE(started().masterPassword.hasAuthenticationTimer());
    }
}

TEST_F(HandedOver, ShredOfAKnownItemAsksForIt)
{
    start({path});
    open(QStringLiteral("shred"), path);
    EXPECT_TRUE(started().dashboard.shredding()->confirmation()->isPresented());
    EXPECT_EQ(started().dashboard.shredding()->protectedItemsToShred().size(), 1);
    EXPECT_TRUE(started().dashboard.shredding()->itemsToShred().isEmpty());
}

TEST_F(HandedOver, ShredOfAnUnknownPathAsksForAnUnprotectedItem)
{
    start();
    open(QStringLiteral("shred"), path);
    EXPECT_TRUE(started().dashboard.shredding()->confirmation()->isPresented());
    EXPECT_EQ(started().dashboard.shredding()->itemsToShred(), QStringList{path});
    EXPECT_TRUE(started().dashboard.shredding()->protectedItemsToShred().isEmpty());
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(HandedOver, APathWithANullCharacterReachesNoHandler)
{
    start();
    for (const QString &action :
         {QStringLiteral("protect"), QStringLiteral("unlock"), QStringLiteral("lock"), QStringLiteral("shred")}) {
        open(action, path + QStringLiteral("%2500.jpg"));
    }
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    EXPECT_FALSE(started().dashboard.shredding()->confirmation()->isPresented());
}

TEST_F(HandedOver, AHundredAddressesAtOnceLeaveOneDialog)
{
    start();
    for (int i = 0; i < 100; ++i) {
        handedOver->handleURLScheme(QStringLiteral("quillhaven://protect?path=/home/%1").arg(i));
    }
    DashboardHarness::settle();
    ASSERT_TRUE(started().protectionMethodDialog.isPresented());
    EXPECT_EQ(started().protectionMethodDialog.title(), QStringLiteral("Protect 99"));
    started().cancelMethod();
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    EXPECT_FALSE(started().passwordDialog.isPresented());
}

TEST_F(HandedOver, AnActionWaitsWhileTheUserAnswersAnotherQuestion)
{
    services.home.write(QStringLiteral("b.txt"), "other");
    start({path, services.home.path(QStringLiteral("b.txt"))});
    const RunningTask<void> unlocking(started().manager.unlockItem(started().item(1)));
    DashboardHarness::settle();
    ASSERT_TRUE(started().passwordDialog.message().contains(QStringLiteral("b.txt")));
    open(QStringLiteral("protect"), services.home.path(QStringLiteral("elsewhere")));
    open(QStringLiteral("unlock"), path);
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    EXPECT_TRUE(started().passwordDialog.message().contains(QStringLiteral("b.txt")));
    started().typePassword(strongPassword);
    unlocking.wait();
    EXPECT_FALSE(started().passwordDialog.isPresented());
    services.clock.advance(500ms);
    DashboardHarness::settle();
    EXPECT_FALSE(started().protectionMethodDialog.isPresented());
    ASSERT_TRUE(started().passwordDialog.isPresented());
    EXPECT_TRUE(started().passwordDialog.message().contains(QStringLiteral("a.txt")));
    started().passwordInput.cancel();
    DashboardHarness::settle();
}
