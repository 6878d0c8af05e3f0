// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainError.h"
#include "engine/PlaceholderFile.h"
#include "engine/ProgressLog.h"
#include "platform/linux/files/FileFixture.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class DuplicateItem : public ::testing::Test
{
protected:
    QString desktop(const QString &name) const { return services.home.path(QStringLiteral("Desktop/") + name); }
    QStringList onDesktop() const
    {
        return QDir(desktop({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Starts the engine and protects a file with this name; it is locked.
    void start(const QString &name, bool useTouchID = false)
    {
        engine.emplace(services, files);
        engine->masterPasswordEntry = QStringLiteral("Master12");
        engine->protect(services.home.write(QStringLiteral("Desktop/") + name, "the bytes"),
                        useTouchID ? QString() : QStringLiteral("Abcdefg1"), useTouchID);
        engine->masterPrompts = 0;
        services.panels.placeRequests.clear();
        progress.emplace(engine->manager);
        log.clear();
    }
    void duplicate(qsizetype index = 0)
    {
        runTask(engine->manager.duplicateAsEncryptedCopy(engine->item(index), progress->callback()));
    }
    /// Duplicates the item, while the session ends before the copy is protected; the user enters this at the prompt.
    void duplicateBeyondTheSession(const std::optional<QString> &secondEntry)
    {
        services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
        start(QStringLiteral("report.txt"));
        HeldCall held(hooks, "copyItem");
        const RunningTask task(engine->manager.duplicateAsEncryptedCopy(engine->item(), progress->callback()));
        ASSERT_TRUE(held.hasStarted());
        ASSERT_TRUE(engine->masterPassword.isAuthenticated());
        services.clock.advance(std::chrono::seconds(300));
        EXPECT_FALSE(engine->masterPassword.isAuthenticated());
        engine->masterPasswordEntry = secondEntry;
        held.letGo();
        task.wait();
        EXPECT_EQ(engine->masterPrompts, 2);
        EXPECT_FALSE(engine->masterPassword.isAuthenticated());
        expectFlagIsReset();
    }
    void expectFlagIsReset()
    {
        EXPECT_TRUE(spinUntil([this] { return !engine->manager.isProcessing(); }));
    }
    /// Returns the names of `count` duplicates of one item.
    QStringList namesOfDuplicates(const QString &name, int count)
    {
        start(name);
        QStringList names;
        for (int made = 0; made < count; ++made) {
            duplicate();
            expectFlagIsReset();
            names.append(engine->item(engine->count() - 1).originalName);
        }
        return names;
    }

    TestPlatform services;
    SeamHooks hooks;
    HookedFileManager files{services.fileManager, hooks};
    LogCapture log;
    std::optional<EngineHarness> engine;
    std::optional<ProgressLog> progress;
    const QStringList wholeProgress{QStringLiteral("0.1 Preparing to duplicate item..."),
                                    QStringLiteral("0.3 Creating duplicate..."),
                                    QStringLiteral("0.6 Protecting duplicate..."), QStringLiteral("0.8 Finalizing..."),
                                    QStringLiteral("1 Duplicate created successfully!")};
};

} // namespace

TEST_F(DuplicateItem, IfTheCredentialStoreIsNotReadyNoCopyIsMade)
{
    start(QStringLiteral("a.txt"));
    services.credentials.failWith = credentialInteractionNotAllowed;
    EXPECT_THROW(duplicate(), KeychainError);
    EXPECT_EQ(onDesktop(), QStringList{QStringLiteral("a.txt")});
    EXPECT_EQ(engine->count(), 1);
    expectFlagIsReset();
}

TEST_F(DuplicateItem, DuplicateOfALockedFileIsAnItemWithoutAFileAtItsPlace)
{
    start(QStringLiteral("report.txt"));
    duplicate();
    EXPECT_EQ(progress->lines, wholeProgress);
    ASSERT_EQ(engine->count(), 2);
    const ProtectedItem &original = engine->item(0);
    const ProtectedItem &copy = engine->item(1);
    EXPECT_EQ(copy.originalName, QStringLiteral("report Copy.txt"));
    EXPECT_EQ(copy.originalPath, desktop(QStringLiteral("report Copy.txt")));
    EXPECT_NE(copy.id, original.id);
    EXPECT_FALSE(copy.isMounted);
    EXPECT_FALSE(copy.useTouchID);
    EXPECT_EQ(TemporaryHome::read(original.originalBackupPath), "the bytes");
    EXPECT_EQ(TemporaryHome::read(copy.originalBackupPath), "the bytes");
    EXPECT_TRUE(TemporaryHome::exists(copy.containerPath));
    EXPECT_EQ(services.credentials.entries.value(copy.id), "Abcdefg1") << "the same password as the original";
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
    EXPECT_TRUE(log.lines().endsWith(QStringLiteral("🗑️ Removed placeholder file")));
    expectFlagIsReset();
    EXPECT_EQ(EngineHarness(services).count(), 2);
}

TEST_F(DuplicateItem, UnlockedDuplicateIsAtItsPlace)
{
    start(QStringLiteral("report.txt"));
    duplicate();
    engine->unlock(1);
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report Copy.txt"))), "the bytes");
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report.txt"))), placeholderText.toUtf8());
}

TEST_F(DuplicateItem, TakenNamesCountFromTwo)
{
    services.home.write(QStringLiteral("Desktop/report Copy.txt"), "mine");
    services.home.write(QStringLiteral("Desktop/report Copy 2.txt"), "mine");
    start(QStringLiteral("report.txt"));
    duplicate();
    EXPECT_EQ(engine->item(1).originalName, QStringLiteral("report Copy 3.txt"));
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report Copy 2.txt"))), "mine");
}

TEST_F(DuplicateItem, ReportBecomesReportCopyThenTwoThenThree)
{
    // There is no file at a duplicate's place until it is unlocked: only its record uses the name.
    const QStringList expected{QStringLiteral("report Copy.txt"), QStringLiteral("report Copy 2.txt"),
                               QStringLiteral("report Copy 3.txt")};
    EXPECT_EQ(namesOfDuplicates(QStringLiteral("report.txt"), 3), expected);
}

TEST_F(DuplicateItem, NameWithoutADotHasNoExtension)
{
    const QStringList expected{QStringLiteral("notes Copy"), QStringLiteral("notes Copy 2")};
    EXPECT_EQ(namesOfDuplicates(QStringLiteral("notes"), 2), expected);
}

TEST_F(DuplicateItem, NameWithALeadingDotBeginsWithASpace)
{
    start(QStringLiteral(".profile"));
    duplicate();
    EXPECT_EQ(engine->item(1).originalName, QStringLiteral(" Copy.profile"));
}

TEST_F(DuplicateItem, OnlyTheLastExtensionIsKeptAtTheEnd)
{
    start(QStringLiteral("archive.tar.gz"));
    duplicate();
    EXPECT_EQ(engine->item(1).originalName, QStringLiteral("archive.tar Copy.gz"));
}

TEST_F(DuplicateItem, DotAtTheEndIsDropped)
{
    start(QStringLiteral("notes."));
    duplicate();
    EXPECT_EQ(engine->item(1).originalName, QStringLiteral("notes Copy"));
}

TEST_F(DuplicateItem, UnreadableFolderFailsInsteadOfMakingEveryNameLookTaken)
{
    start(QStringLiteral("report.txt"));
    const QString desktop = services.home.path(QStringLiteral("Desktop"));
    const auto permissions = QFile::permissions(desktop);
    ASSERT_TRUE(QFile::setPermissions(desktop, {}));
    QString text;
    try {
        const AsPlainUser user; // who cannot read whether a name there is taken
        duplicate();
    } catch (const FileError &error) {
        text = error.errorDescription();
    }
    ASSERT_TRUE(QFile::setPermissions(desktop, permissions));
    EXPECT_EQ(text, QStringLiteral("You don't have permission to read \"report Copy.txt\"."));
    EXPECT_EQ(progress->lines, wholeProgress.first(2));
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
    expectFlagIsReset();
}

TEST_F(DuplicateItem, CopyAndRemovalDoNotBlockTheWindow)
{
    start(QStringLiteral("report.txt"));
    QStringList onTheMainThread;
    QSemaphore calls;
    hooks.before = [&](const char *call, const QString &) {
        if (QThread::currentThread() == QCoreApplication::instance()->thread()) {
            onTheMainThread.append(QString::fromLatin1(call));
        } else if (qstrcmp(call, "copyItem") == 0 || qstrcmp(call, "removeItem") == 0) {
            calls.release();
        }
    };
    duplicate();
    EXPECT_EQ(onTheMainThread, QStringList());
    EXPECT_GE(calls.available(), 2);
}

TEST_F(DuplicateItem, MissingPrivateCopyFailsAndCreatesNothing)
{
    start(QStringLiteral("report.txt"));
    ASSERT_TRUE(QFile::remove(engine->item().originalBackupPath));
    EXPECT_EQ(engineErrorOf([this] { duplicate(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(progress->lines, QStringList(wholeProgress.first()));
    EXPECT_EQ(engine->count(), 1);
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
    expectFlagIsReset();
}

TEST_F(DuplicateItem, UnlockedItemCannotBeDuplicated)
{
    start(QStringLiteral("report.txt"));
    engine->unlock();
    EXPECT_EQ(engineErrorOf([this] { duplicate(); }), QuillhavenError::itemNotFound);
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
}

TEST_F(DuplicateItem, FolderFailsWithTheErrorOfTheStoreAndLeavesThePlainCopy)
{
    start(QStringLiteral("report.txt"));
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    engine->protect(desktop(QStringLiteral("folder")), {});
    try {
        duplicate(1);
        ADD_FAILURE() << "no error";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.errorDescription(), QStringLiteral("Failed to retrieve from keychain: -25300"));
    }
    EXPECT_EQ(progress->lines, wholeProgress.first(4));
    EXPECT_EQ(engine->count(), 2);
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("folder Copy/inner.txt"))), "inner");
    expectFlagIsReset();
}

TEST_F(DuplicateItem, DuplicateOfATouchIDItemIsATouchIDItem)
{
    start(QStringLiteral("report.txt"), true);
    duplicate();
    ASSERT_EQ(engine->count(), 2);
    EXPECT_TRUE(engine->item(1).useTouchID);
    EXPECT_FALSE(services.credentials.entries.contains(engine->item(1).id)) << "the duplicate has no password";
    EXPECT_EQ(services.credentials.entries.size(), 2) << "the duplicate has its own key";
    EXPECT_EQ(services.biometrics.reasons, QStringList()) << "no fingerprint is requested";
}

TEST_F(DuplicateItem, FailedCopyIsReported)
{
    start(QStringLiteral("report.txt"));
    hooks.before = failing("copyItem", ENOSPC);
    EXPECT_THROW(duplicate(), FileError);
    EXPECT_EQ(progress->lines, wholeProgress.first(3));
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
    expectFlagIsReset();
}

TEST_F(DuplicateItem, DeclinedPanelFailsAndLeavesThePlainCopy)
{
    start(QStringLiteral("report.txt"));
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    EXPECT_EQ(engineErrorOf([this] { duplicate(); }), QuillhavenError::accessDenied);
    EXPECT_EQ(progress->lines, wholeProgress.first(4));
    EXPECT_EQ(engine->count(), 1);
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report Copy.txt"))), "the bytes");
    expectFlagIsReset();
}

TEST_F(DuplicateItem, PlaceholderThatCannotBeRemovedFailsAndKeepsTheNewItem)
{
    start(QStringLiteral("report.txt"));
    hooks.before = failing("removeItem", EACCES);
    EXPECT_THROW(duplicate(), FileError);
    EXPECT_EQ(progress->lines, wholeProgress);
    EXPECT_EQ(engine->count(), 2);
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report Copy.txt"))), placeholderText.toUtf8());
    EXPECT_FALSE(log.contains(QStringLiteral("🗑️ Removed placeholder file")));
    expectFlagIsReset();
}

TEST_F(DuplicateItem, OnePromptIsEnoughForTheCopyAndItsProtectionAndTheSessionEnds)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    start(QStringLiteral("report.txt"));
    duplicate();
    EXPECT_EQ(engine->masterPrompts, 1);
    EXPECT_FALSE(engine->masterPassword.isAuthenticated());
    EXPECT_FALSE(engine->masterPassword.hasAuthenticationTimer());
}

TEST_F(DuplicateItem, FailureLeavesTheSessionOpen)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    start(QStringLiteral("report.txt"));
    ASSERT_TRUE(QFile::remove(engine->item().originalBackupPath));
    EXPECT_THROW(duplicate(), QuillhavenError);
    EXPECT_TRUE(engine->masterPassword.isAuthenticated());
}

TEST_F(DuplicateItem, CancelledMasterPromptEndsBeforeTheFirstReport)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    start(QStringLiteral("report.txt"));
    engine->masterPasswordEntry.reset();
    duplicate();
    EXPECT_EQ(engine->masterPrompts, 1);
    EXPECT_EQ(progress->lines, QStringList());
    EXPECT_EQ(log.lines(), QStringList());
    EXPECT_EQ(engine->count(), 1);
}

TEST_F(DuplicateItem, PanelAsksForTheDuplicateInTheOriginalsFolder)
{
    start(QStringLiteral("report.txt"));
    duplicate();
    ASSERT_EQ(services.panels.placeRequests.size(), 1);
    EXPECT_EQ(services.panels.placeRequests.first().path, desktop(QStringLiteral("report Copy.txt")));
}

TEST_F(DuplicateItem, SessionThatEndsMeanwhileIsAskedForAgainBeforeTheCopyIsProtected)
{
    duplicateBeyondTheSession(QStringLiteral("Master12"));
    ASSERT_EQ(engine->count(), 2);
    EXPECT_EQ(TemporaryHome::read(engine->item(1).originalBackupPath), "the bytes");
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
}

TEST_F(DuplicateItem, PromptThatIsCancelledAfterTheSessionHasEndedLeavesNoPlainCopyAndTheOriginal)
{
    duplicateBeyondTheSession(std::nullopt);
    ASSERT_EQ(engine->count(), 1);
    EXPECT_EQ(engine->storedItems(), engine->manager.protectedItems());
    EXPECT_EQ(TemporaryHome::read(engine->item().originalBackupPath), "the bytes");
    EXPECT_EQ(TemporaryHome::read(desktop(QStringLiteral("report.txt"))), placeholderText.toUtf8());
    EXPECT_EQ(onDesktop(), QStringList(QStringLiteral("report.txt")));
}
