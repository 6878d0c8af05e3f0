// SPDX-License-Identifier: GPL-3.0-or-later

// The models of the sheets for long operations.

#include "presentation/dialogs/BulkFilePickerModel.h"
#include "presentation/dialogs/OperationProgress.h"
#include "presentation/dialogs/RecoveryDialogManager.h"
#include "presentation/dialogs/ShredConfirmationDialogModel.h"
#include "support/FakeFilePanels.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include "platform/FileError.h"
#include "support/ManualClock.h"

#include <QDir>

#include <gtest/gtest.h>

#include <limits>
#include <memory>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

QString u(const char *text)
{
    return QString::fromUtf8(text);
}

class ShredConfirmation : public ::testing::Test
{
protected:
    ShredConfirmation()
    {
        dialog.onConfirm = [this] { chosen += u("confirm"); };
        dialog.onCancel = [this] { chosen += u("cancel"); };
        dialog.show({u("will.pdf")});
    }
    bool passes(const char *phrase)
    {
        dialog.setHasReadWarning(true);
        dialog.setConfirmationText(u(phrase));
        return dialog.isConfirmEnabled();
    }

    ShredConfirmationDialogModel dialog;
    QStringList chosen;
};

} // namespace

TEST_F(ShredConfirmation, PhraseInCapitalsNeedsTheTickedBoxToo)
{
    dialog.setConfirmationText(u("SHRED PERMANENTLY"));
    EXPECT_FALSE(dialog.isConfirmEnabled());
    dialog.setHasReadWarning(true);
    EXPECT_TRUE(dialog.isConfirmEnabled());
    dialog.setHasReadWarning(false);
    EXPECT_FALSE(dialog.isConfirmEnabled());
}

TEST_F(ShredConfirmation, TickedBoxIsNotEnough)
{
    EXPECT_FALSE(passes(""));
}

TEST_F(ShredConfirmation, PhraseInMixedCasePasses)
{
    EXPECT_TRUE(passes("Shred Permanently"));
    EXPECT_TRUE(passes("shred permanently"));
}

TEST_F(ShredConfirmation, PhraseIsNotTrimmed)
{
    EXPECT_FALSE(passes("shred  permanently"));
    EXPECT_FALSE(passes("shred permanently "));
    EXPECT_FALSE(passes(" shred permanently"));
}

TEST_F(ShredConfirmation, NothingIsConfirmedWhileTheButtonIsDisabled)
{
    dialog.confirm();
    EXPECT_TRUE(dialog.isPresented());
    EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(ShredConfirmation, ConfirmClosesBeforeItActs)
{
    dialog.onConfirm = [this] { chosen += dialog.isPresented() ? u("open") : u("closed"); };
    ASSERT_TRUE(passes("shred permanently"));
    dialog.confirm();
    dialog.confirm();
    EXPECT_EQ(chosen, QStringList(u("closed")));
}

TEST_F(ShredConfirmation, ActionCanAskTheNextQuestionInTheSameDialog)
{
    dialog.onConfirm = [this] {
        const QString kept = u("first");
        dialog.onConfirm = [this] { chosen += u("second"); };
        dialog.show({u("other.pdf")});
        chosen += kept;
    };
    ASSERT_TRUE(passes("shred permanently"));
    dialog.confirm();
    EXPECT_TRUE(dialog.isPresented());
    ASSERT_TRUE(passes("shred permanently"));
    dialog.confirm();
    EXPECT_EQ(chosen, (QStringList{u("first"), u("second")}));
    EXPECT_FALSE(dialog.isPresented());
}

TEST_F(ShredConfirmation, NextQuestionStartsWithoutTheNoteOfTheLastOne)
{
    dialog.setStorageNote(u("The data may survive."));
    dialog.show({u("album")});
    EXPECT_EQ(dialog.storageNote(), QString());
}

TEST_F(ShredConfirmation, NextQuestionStartsEmpty)
{
    ASSERT_TRUE(passes("shred permanently"));
    dialog.cancel();
    EXPECT_EQ(chosen, QStringList(u("cancel")));
    dialog.show({u("other.pdf")});
    EXPECT_FALSE(dialog.hasReadWarning());
    EXPECT_EQ(dialog.confirmationText(), QString());
    EXPECT_EQ(dialog.itemNames(), QStringList(u("other.pdf")));
}

TEST(OperationProgress, PercentIsRoundedDown)
{
    ManualClock clock;
    OperationProgress operation(clock);
    operation.report(u("Shredding"), 0.999);
    EXPECT_EQ(operation.percent(), 99);
    operation.report(u("Shredding"), 1.0);
    EXPECT_EQ(operation.percent(), 100);
}

TEST(OperationProgress, ProgressIsLimitedToItsRange)
{
    ManualClock clock;
    OperationProgress operation(clock);
    operation.report(u("Preparing"), std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(operation.progress(), 0);
    EXPECT_EQ(operation.percent(), 0);
    operation.report(u("Preparing"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(operation.percent(), 100);
    operation.report(u("Preparing"), -1);
    EXPECT_EQ(operation.percent(), 0);
}

TEST(OperationProgress, TimeLeftIsEstimatedFromTheFirstReportOn)
{
    using namespace std::chrono_literals;
    ManualClock clock;
    OperationProgress operation(clock);
    operation.show();
    clock.advance(5min); // the user is asked for a password meanwhile
    operation.report(u("Locking"), 0);
    clock.advance(2s);
    operation.report(u("Locking"), 0.01);
    EXPECT_EQ(operation.timeLeft(), QString()) << "too early to say";
    clock.advance(8s);
    operation.report(u("Locking"), 0.05);
    EXPECT_EQ(operation.timeLeft(), u("About 3 minutes left"));
    operation.report(u("Locking"), 0.001);
    EXPECT_EQ(operation.timeLeft(), u("About 3 hours left"));
    operation.report(u("Locking"), 0.14);
    EXPECT_EQ(operation.timeLeft(), u("About a minute left"));
    operation.report(u("Locking"), 0.25);
    EXPECT_EQ(operation.timeLeft(), u("Less than a minute left"));
    operation.report(u("Locking"), 0.75);
    EXPECT_EQ(operation.timeLeft(), u("A few seconds left"));
    operation.report(u("Locking"), 1);
    EXPECT_EQ(operation.timeLeft(), QString());
    operation.show();
    EXPECT_EQ(operation.timeLeft(), QString());
}

TEST(OperationProgress, OnlyASheetWhoseOperationHasNotBegunCanBeLeft)
{
    ManualClock clock;
    OperationProgress operation(clock);
    operation.show();
    operation.report(u("Shredding"), 0);
    operation.hideBeforeBeginning();
    EXPECT_TRUE(operation.isPresented());
    operation.hide();
    operation.show();
    operation.hideBeforeBeginning();
    EXPECT_FALSE(operation.isPresented());
}

TEST(OperationProgress, ReportAfterTheUserClosedTheSheetDoesNotReopenIt)
{
    ManualClock clock;
    OperationProgress operation(clock);
    operation.report(u("old"), 0.5);
    operation.show();
    EXPECT_TRUE(operation.isPresented());
    EXPECT_EQ(operation.message(), QString());
    EXPECT_EQ(operation.progress(), 0);
    operation.hide();
    operation.report(u("Locking a.txt..."), 0.5);
    EXPECT_FALSE(operation.isPresented());
    EXPECT_EQ(operation.message(), u("Locking a.txt..."));
}

TEST(OperationProgress, EarlierOperationDoesNotChangeTheSheetOfALaterOne)
{
    ManualClock clock;
    OperationProgress progress(clock);
    auto earlier = std::make_unique<ShownOperation>(progress);
    earlier->callback()(u("Locking a.txt..."), 0.5);
    EXPECT_EQ(progress.message(), u("Locking a.txt..."));
    progress.hide(); // the user
    {
        const ShownOperation later(progress);
        later.callback()(u("Unlocking b.txt..."), 0.25);
        earlier->callback()(u("Locking c.txt..."), 0.75);
        EXPECT_EQ(progress.message(), u("Unlocking b.txt..."));
        EXPECT_EQ(progress.percent(), 25);
        earlier.reset();
        EXPECT_TRUE(progress.isPresented());
    }
    EXPECT_FALSE(progress.isPresented());
}

namespace {

class BulkFilePicker : public ::testing::Test
{
protected:
    BulkFilePicker()
    {
        picker.onFilesSelected = [this](const QStringList &paths) { handedOver = paths; };
        picker.show();
    }

    TemporaryHome home;
    FakeFilePanels panels;
    QStringList refused;
    std::optional<QStringList> handedOver;
    BulkFilePickerModel picker{panels, [this](QStringList paths) {
                                   paths.removeIf([this](const QString &path) { return refused.contains(path); });
                                   return paths;
                               }};
};

} // namespace

TEST_F(BulkFilePicker, SameFileTwiceIsListedOnce)
{
    picker.handleFileSelection({u("/a"), u("/a")});
    picker.handleFileSelection({u("/a")});
    EXPECT_EQ(picker.selectedURLs(), QStringList(u("/a")));
}

TEST_F(BulkFilePicker, LaterSelectionAddsToTheList)
{
    picker.handleFileSelection({u("/b")});
    picker.handleFileSelection({u("/a"), u("/c")});
    EXPECT_EQ(picker.selectedURLs(), (QStringList{u("/b"), u("/a"), u("/c")}));
}

TEST_F(BulkFilePicker, RejectedItemIsIgnoredWithoutAMessage)
{
    refused = {u("/b")};
    picker.handleFileSelection({u("/a"), u("/b"), u("/c")});
    EXPECT_EQ(picker.selectedURLs(), (QStringList{u("/a"), u("/c")}));
}

TEST_F(BulkFilePicker, EmptyListCannotBeProtected)
{
    EXPECT_FALSE(picker.canProtect());
    picker.protect();
    EXPECT_TRUE(picker.isPresented());
    EXPECT_FALSE(handedOver);
}

TEST_F(BulkFilePicker, EntriesAreRemovedSinglyOrAllTogether)
{
    picker.handleFileSelection({u("/a"), u("/b"), u("/c")});
    picker.remove(u("/b"));
    EXPECT_EQ(picker.selectedURLs(), (QStringList{u("/a"), u("/c")}));
    picker.clearAll();
    EXPECT_EQ(picker.count(), 0);
    EXPECT_FALSE(picker.canProtect());
}

TEST_F(BulkFilePicker, EntriesDistinguishFilesAndFolders)
{
    const QString file = home.write(u("papers/a.txt"));
    picker.handleFileSelection({file, home.path(u("papers"))});
    const QVariantMap first = picker.entries().at(0).toMap();
    EXPECT_EQ(first.value(u("name")).toString(), u("a.txt"));
    EXPECT_FALSE(first.value(u("isFolder")).toBool());
    EXPECT_TRUE(picker.entries().at(1).toMap().value(u("isFolder")).toBool());
}

TEST_F(BulkFilePicker, ProtectPassesTheListAndCloses)
{
    picker.handleFileSelection({u("/a"), u("/b")});
    picker.protect();
    EXPECT_FALSE(picker.isPresented());
    EXPECT_EQ(handedOver, (QStringList{u("/a"), u("/b")}));
}

TEST_F(BulkFilePicker, CancelClosesAndTheNextListIsEmpty)
{
    picker.handleFileSelection({u("/a")});
    picker.cancel();
    EXPECT_FALSE(picker.isPresented());
    EXPECT_FALSE(handedOver);
    picker.show();
    EXPECT_EQ(picker.count(), 0);
}

TEST_F(BulkFilePicker, PanelAllowsSeveralFilesAndFolders)
{
    panels.answer = [](const OpenPanelRequest &) { return u("/a"); };
    picker.selectFiles();
    EXPECT_TRUE(picker.showingFilePicker());
    picker.selectFiles();
    ASSERT_TRUE(spinUntil([this] { return !picker.showingFilePicker(); }));
    ASSERT_EQ(panels.requests.size(), 1) << "a second press does not open a second panel";
    EXPECT_TRUE(panels.requests.constFirst().allowsMultipleSelection);
    EXPECT_TRUE(panels.requests.constFirst().canChooseFiles);
    EXPECT_TRUE(panels.requests.constFirst().canChooseDirectories);
    EXPECT_EQ(picker.selectedURLs(), QStringList(u("/a")));
}

TEST_F(BulkFilePicker, FailingPanelIsLoggedAndChangesNothing)
{
    const LogCapture log;
    picker.handleFileSelection({u("/a")});
    panels.answer = [](const OpenPanelRequest &) -> std::optional<QString> {
        throw FileError(FileError::Kind::NotAFileOrFolder, u("“pipe” is neither a file nor a folder."));
    };
    picker.selectFiles();
    ASSERT_TRUE(spinUntil([this] { return !picker.showingFilePicker(); }));
    EXPECT_TRUE(log.contains(u("File selection failed")));
    EXPECT_EQ(picker.selectedURLs(), QStringList(u("/a")));
}

TEST_F(BulkFilePicker, PanelThatFailsInAnyOtherWayCanBeOpenedAgain)
{
    const LogCapture log;
    panels.answer = [](const OpenPanelRequest &) -> std::optional<QString> { throw std::bad_alloc(); };
    picker.selectFiles();
    ASSERT_TRUE(spinUntil([this] { return !picker.showingFilePicker(); }));
    EXPECT_TRUE(log.contains(u("File selection failed")));
    panels.answer = [](const OpenPanelRequest &) { return u("/a"); };
    picker.selectFiles();
    ASSERT_TRUE(spinUntil([this] { return !picker.showingFilePicker(); }));
    EXPECT_EQ(picker.selectedURLs(), QStringList(u("/a")));
}

TEST_F(BulkFilePicker, DeclinedPanelChangesNothing)
{
    const LogCapture log;
    panels.answer = [](const OpenPanelRequest &) { return std::nullopt; };
    picker.selectFiles();
    ASSERT_TRUE(spinUntil([this] { return !picker.showingFilePicker(); }));
    EXPECT_EQ(picker.count(), 0);
    EXPECT_FALSE(log.contains(u("File selection failed")));
}

TEST(RecoveryDialogManager, ShowStoresBothActionsAndResetsTheState)
{
    RecoveryDialogManager manager;
    manager.setIsRecovering(true);
    QStringList chosen;
    manager.show([&](const QString &password) { chosen += password; }, [&] { chosen += u("cancel"); });
    EXPECT_TRUE(manager.isPresented());
    EXPECT_FALSE(manager.isRecovering());
    EXPECT_EQ(manager.recoverTitle(), u("Recover All Files"));
    manager.recover(QString());
    EXPECT_FALSE(manager.isRecovering()) << "an empty password starts no recovery";
    manager.recover(u("Masterkey9"));
    EXPECT_TRUE(manager.isRecovering());
    EXPECT_TRUE(manager.isPresented()) << "it is open until the recovery has ended";
    EXPECT_EQ(manager.recoverTitle(), u("Recovering..."));
    manager.recover(u("Masterkey9"));
    manager.cancel();
    EXPECT_EQ(chosen, (QStringList{u("Masterkey9"), u("cancel")}));
}
