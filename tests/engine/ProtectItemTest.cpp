// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/PlaceholderFile.h"
#include "support/CallHooks.h"
#include "support/EngineHarness.h"
#include "support/FileManagerDecorator.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

#include <algorithm>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ProtectItem : public ::testing::Test
{
protected:
    QString storage(const QString &name = {}) const
    {
        return services.home.path(QStringLiteral(".local/share/quillhaven/") + name);
    }
    QStringList storedNames() const { return QDir(storage()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    template <typename Call>
    static QString failureOf(Call call)
    {
        try {
            call();
        } catch (const LocalizedError &error) {
            return error.errorDescription();
        }
        return {};
    }

    TestPlatform services;
    LogCapture log;
};

/// Returns the first identifiers from a list.
class FixedRandom : public OpenSslRandomSource
{
public:
    [[nodiscard]] QString uuidString() override { return QStringLiteral("11111111-2222-4333-8444-555555555555"); }
};

} // namespace

TEST_F(ProtectItem, FileMovesToPrivateStorageAndLeavesPlaceholderContainerCredentialAndRecord)
{
    const QString path = services.home.write(QStringLiteral("Desktop/secret.txt"), "the bytes");
    EngineHarness engine(services);
    engine.protect(path, QStringLiteral("Abcdefg1"));

    ASSERT_EQ(engine.count(), 1);
    const ProtectedItem &item = engine.item();
    EXPECT_EQ(item.id, item.id.toUpper());
    EXPECT_EQ(item.originalName, QStringLiteral("secret.txt"));
    EXPECT_EQ(item.originalPath, path);
    EXPECT_EQ(item.originalBackupPath, storage(item.id + QStringLiteral("_original")));
    EXPECT_EQ(item.containerPath, services.home.path(QStringLiteral("Documents/secret.txt.secured")));
    EXPECT_FALSE(item.isFolder);
    EXPECT_FALSE(item.isMounted);
    EXPECT_FALSE(item.isProcessing);
    EXPECT_FALSE(item.mountedPath.has_value());
    EXPECT_EQ(TemporaryHome::read(item.originalBackupPath), "the bytes");
    EXPECT_EQ(TemporaryHome::read(path), "This file is protected by Quillhaven. Use the app to unlock it.");
    EXPECT_EQ(TemporaryHome::read(item.containerPath).size(), 70 + 9);
    EXPECT_TRUE(TemporaryHome::read(item.containerPath).startsWith("QUILLHAVEN"));
    EXPECT_EQ(services.credentials.entries.value(item.id), "Abcdefg1");
    EXPECT_EQ(services.credentials.entries.size(), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("File access granted for: ") + path));
}

TEST_F(ProtectItem, EmptyFileHasAContainerOfSeventyBytes)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/empty"), ""));
    EXPECT_EQ(TemporaryHome::read(engine.item().containerPath).size(), 70);
}

TEST_F(ProtectItem, FolderGetsAMarkerAndNoCredential)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"), "inner");
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")));

    const ProtectedItem &item = engine.item();
    EXPECT_TRUE(item.isFolder);
    EXPECT_EQ(TemporaryHome::read(item.containerPath), "FOLDER:" + item.originalBackupPath.toUtf8());
    EXPECT_EQ(TemporaryHome::read(item.originalBackupPath + QStringLiteral("/inner.txt")), "inner");
    EXPECT_EQ(TemporaryHome::read(item.originalPath), placeholderText.toUtf8());
    EXPECT_TRUE(services.credentials.entries.isEmpty());
    ASSERT_EQ(services.panels.placeRequests.size(), 1);
    EXPECT_TRUE(services.panels.placeRequests.first().isDirectory);
}

TEST_F(ProtectItem, FolderWithTouchIDStoresNoKeyAndTheRecordSaysTouchID)
{
    services.home.write(QStringLiteral("Desktop/folder/inner.txt"));
    EngineHarness engine(services);
    engine.protect(services.home.path(QStringLiteral("Desktop/folder")), {}, true);
    EXPECT_TRUE(engine.item().useTouchID);
    EXPECT_TRUE(services.credentials.entries.isEmpty());
}

TEST_F(ProtectItem, TouchIDFileStoresAMarkerKey)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")), {}, true);
    EXPECT_EQ(services.credentials.entries.keys(), QStringList{engine.item().id + QStringLiteral("_touchid")});
    EXPECT_EQ(services.credentials.entries.first().size(), 36);
}

TEST_F(ProtectItem, TouchIDFileWithTheSettingDisabledStoresTheGivenPassword)
{
    services.defaults.standard().setBool(QStringLiteral("enableTouchID"), false);
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")), {}, true);
    EXPECT_TRUE(engine.item().useTouchID);
    ASSERT_TRUE(services.credentials.entries.contains(engine.item().id));
    EXPECT_EQ(services.credentials.entries.value(engine.item().id), "");
}

TEST_F(ProtectItem, ForbiddenCharactersOfTheNameBecomeUnderscoresInTheContainerName)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a:b*c.txt")));
    EXPECT_EQ(engine.item().containerPath, services.home.path(QStringLiteral("Documents/a_b_c.txt.secured")));
    EXPECT_EQ(storedNames(), QStringList{engine.item().id + QStringLiteral("_original")});
    engine.protect(services.home.write(QStringLiteral("Desktop/\\?\"<>|x")));
    EXPECT_EQ(engine.item(1).containerPath, services.home.path(QStringLiteral("Documents/______x.secured")));
}

TEST_F(ProtectItem, SecondFileWithTheSameNameOverwritesTheFirstContainer)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("a/report.pdf"), "first"));
    const QByteArray first = TemporaryHome::read(engine.item(0).containerPath);
    engine.protect(services.home.write(QStringLiteral("b/report.pdf"), "second!"));
    EXPECT_EQ(engine.item(0).containerPath, engine.item(1).containerPath);
    EXPECT_NE(TemporaryHome::read(engine.item(0).containerPath), first);
    EXPECT_EQ(TemporaryHome::read(engine.item(0).originalBackupPath), "first");
    EXPECT_EQ(TemporaryHome::read(engine.item(1).originalBackupPath), "second!");
}

TEST_F(ProtectItem, TakenNameInPrivateStorageGetsACounter)
{
    FixedRandom random;
    Platform platform = services.platform();
    const QString base = QStringLiteral("11111111-2222-4333-8444-555555555555_original");
    services.home.write(QStringLiteral(".local/share/quillhaven/") + base, "other");
    services.home.write(QStringLiteral(".local/share/quillhaven/") + base + QStringLiteral("_1"), "another");
    MasterPasswordDialogManager dialog;
    MasterPasswordManager master(platform, dialog);
    PasswordInputDialogManager passwordDialog;
    const Platform fixed{platform.fileManager,
                         platform.directories,
                         platform.defaults,
                         platform.credentials,
                         platform.credentialQueue,
                         platform.credentialStoreState,
                         platform.biometrics,
                         platform.panels,
                         platform.cloud,
                         platform.clock,
                         random,
                         platform.notifications,
                         platform.input,
                         platform.opener,
                         platform.loginItem,
                         platform.watched,
                         platform.bundle,
                         platform.urlSession,
                         platform.machine,
                         platform.display,
                         platform.fileViewer,
                         platform.desktopNotifications,
                         platform.volumes};
    QuillhavenShredder shredder(fixed, master);
    QuillhavenManager manager(fixed, master, passwordDialog, shredder);
    runTask(manager.protectItem(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"),
                                QStringLiteral("Abcdefg1"), false));
    EXPECT_EQ(manager.protectedItems().first().originalBackupPath, storage(base + QStringLiteral("_2")));
    EXPECT_EQ(TemporaryHome::read(storage(base)), "other");
}

TEST_F(ProtectItem, UnwritablePlaceholderLeavesTheItemInStorageWithAContainerAndNoRecord)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    SeamHooks hooks;
    hooks.before = failing("writeFile", EACCES, {path});
    HookedFileManager files(services.fileManager, hooks);
    EngineHarness engine(services, files);
    EXPECT_THROW(engine.protect(path), FileError);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_FALSE(TemporaryHome::exists(path));
    ASSERT_EQ(storedNames().size(), 1);
    EXPECT_EQ(TemporaryHome::read(storage(storedNames().first())), "mine");
    EXPECT_TRUE(TemporaryHome::exists(services.home.path(QStringLiteral("Documents/a.txt.secured"))));
    EXPECT_TRUE(services.credentials.entries.isEmpty());
    EXPECT_FALSE(engine.manager.isProcessing());
}

TEST_F(ProtectItem, FailingCredentialStoreLeavesThePlaceholderAndNoRecord)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    EngineHarness engine(services);
    services.credentials.failWritesWith = credentialInteractionNotAllowed;
    EXPECT_THROW(engine.protect(path), LocalizedError);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), placeholderText.toUtf8());
    EXPECT_EQ(TemporaryHome::read(storage(storedNames().first())), "mine");
}

TEST_F(ProtectItem, IfTheCredentialStoreIsNotReadyAFileIsNotMoved)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    EngineHarness engine(services);
    services.credentials.failWith = credentialInteractionNotAllowed;
    EXPECT_EQ(failureOf([&] { engine.protect(path); }), QStringLiteral("Failed to save to keychain: -25308"));
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(storedNames().isEmpty());
    EXPECT_FALSE(TemporaryHome::exists(services.home.path(QStringLiteral("Documents/a.txt.secured"))));
    EXPECT_FALSE(engine.manager.isProcessing());

    services.credentials.failWith = credentialSuccess;
    engine.protect(path);
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(ProtectItem, AFolderNeedsNoCredentialStore)
{
    (void)services.home.write(QStringLiteral("Desktop/papers/a.txt"), "mine");
    EngineHarness engine(services);
    services.credentials.failWith = credentialNotAvailable;
    engine.protect(services.home.path(QStringLiteral("Desktop/papers")));
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(ProtectItem, ChoosingAnotherFileInThePanelFailsWithTheNameOfTheItemAndMovesNothing)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    const QString other = services.home.write(QStringLiteral("Desktop/b.txt"));
    services.panels.confirm = [other](const PlaceRequest &) { return other; };
    EngineHarness engine(services);
    QString text;
    EXPECT_EQ(engineErrorOf([&] { engine.protect(path); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("Please select the correct item: a.txt"));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(storedNames().isEmpty());
}

TEST_F(ProtectItem, CancelledPanelFailsWithAccessDenied)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    EngineHarness engine(services);
    QString text;
    EXPECT_EQ(engineErrorOf([&] { engine.protect(path); }, &text), QuillhavenError::accessDenied);
    EXPECT_EQ(text, QStringLiteral("File access was denied by the user"));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(engine.manager.isProcessing());
}

TEST_F(ProtectItem, PanelAsksForTheItemAtItsPlace)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"));
    EngineHarness engine(services);
    engine.protect(path);
    ASSERT_EQ(services.panels.placeRequests.size(), 1);
    const PlaceRequest &request = services.panels.placeRequests.first();
    EXPECT_EQ(request.message, QStringLiteral("Please grant access to the selected item"));
    EXPECT_EQ(request.prompt, QStringLiteral("Grant Access"));
    EXPECT_EQ(request.path, path);
    EXPECT_FALSE(request.isDirectory);
}

TEST_F(ProtectItem, MissingItemFailsBeforeThePanel)
{
    EngineHarness engine(services);
    EXPECT_EQ(engineErrorOf([&] { engine.protect(QStringLiteral("/no/such/file")); }), QuillhavenError::itemNotFound);
    EXPECT_TRUE(services.panels.placeRequests.isEmpty());
}

TEST_F(ProtectItem, CancelledMasterPromptEndsWithoutAnErrorOrALogLine)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    log.clear();
    engine.protect(path);
    EXPECT_EQ(engine.masterPrompts, 1);
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(log.lines().join(QLatin1Char('|')), QString());
}

TEST_F(ProtectItem, SuccessEndsTheMasterSessionAndLeavesTheFlagSet)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt")));
    EXPECT_EQ(engine.count(), 1);
    EXPECT_FALSE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.masterPassword.hasAuthenticationTimer());
    EXPECT_TRUE(engine.manager.isProcessing());
}

TEST_F(ProtectItem, FailureLeavesTheMasterSessionOpenAndClearsTheFlag)
{
    services.credentials.entries.insert(QStringLiteral("master_password"), "Master12");
    services.panels.confirm = [](const PlaceRequest &) { return std::nullopt; };
    EngineHarness engine(services);
    engine.masterPasswordEntry = QStringLiteral("Master12");
    EXPECT_THROW(engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"))), QuillhavenError);
    EXPECT_TRUE(engine.masterPassword.isAuthenticated());
    EXPECT_FALSE(engine.manager.isProcessing());
}

TEST_F(ProtectItem, ProtectedItemSurvivesARestartWithItsPassword)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    {
        EngineHarness first(services);
        first.protect(path);
    }
    EngineHarness second(services);
    ASSERT_EQ(second.count(), 1);
    second.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
}

TEST_F(ProtectItem, FifoIsRejectedAndNotMoved)
{
    const QString path = services.home.path(QStringLiteral("Desktop/pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EngineHarness engine(services);
    EXPECT_THROW(engine.protect(path), FileError);
    EXPECT_TRUE(TemporaryHome::exists(path));
    EXPECT_TRUE(storedNames().isEmpty());
}

TEST_F(ProtectItem, ReportsWhyAnItemCannotBeProtected)
{
    const QString link = services.home.path(QStringLiteral("Desktop/link"));
    services.home.write(QStringLiteral("Desktop/a.txt"));
    ASSERT_EQ(::symlink("a.txt", QFile::encodeName(link).constData()), 0);
    const QString fifo = services.home.path(QStringLiteral("Desktop/pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    EngineHarness engine(services);
    // As one of a list, whose panel returns a path as requested.
    const auto protect = [&](const QString &path) {
        runTask(engine.manager.protectItemWithAccessibleURL(path, QStringLiteral("Abcdefg1"), false));
    };
    EXPECT_EQ(failureOf([&] { protect(link); }),
              QStringLiteral("Could not protect \"link\" because it is only a link. Protect the item it leads to "
                             "instead."));
    EXPECT_EQ(failureOf([&] { protect(fifo); }),
              QStringLiteral("Could not protect \"pipe\" because it is neither a file nor a folder."));
}

TEST_F(ProtectItem, ItemsWithUnusualNamesCanBeProtectedAndUnlocked)
{
    const QStringList names{QStringLiteral("with space"),     QStringLiteral("quo\"te's"),
                            QStringLiteral("line\nbreak"),    QStringLiteral("-leading"),
                            QStringLiteral(".hidden"),        QStringLiteral("emoji 😀"),
                            QStringLiteral("\u202eright"),    QStringLiteral("עברית.txt"),
                            QStringLiteral("name.with.dots"), QString(247, QLatin1Char('n'))};
    EngineHarness engine(services);
    for (const QString &name : names) {
        const QString path = services.home.write(QStringLiteral("Desktop/") + name, name.toUtf8());
        engine.protect(path);
        engine.unlock(engine.count() - 1);
        EXPECT_EQ(TemporaryHome::read(path), name.toUtf8());
        engine.lock(engine.count() - 1);
        engine.remove(engine.count() - 1);
        EXPECT_EQ(TemporaryHome::read(path), name.toUtf8());
    }
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(storedNames().isEmpty());
    EXPECT_TRUE(services.credentials.entries.isEmpty());
}

TEST_F(ProtectItem, CanProtectReturnsTheFirstReasonAgainst)
{
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"));
    EngineHarness engine(services);
    EXPECT_TRUE(engine.manager.canProtectItem(path).canProtect);
    EXPECT_FALSE(engine.manager.canProtectItem(path).errorMessage.has_value());
    EXPECT_EQ(engine.manager.canProtectItem(QStringLiteral("/none")).errorMessage,
              QStringLiteral("File or folder does not exist"));
    engine.protect(path);
    EXPECT_EQ(engine.manager.canProtectItem(path).errorMessage, QStringLiteral("Item is already protected"));
}

TEST_F(ProtectItem, RecordWithTheSameNameFurtherBelowTheFolderCountsAsProtected)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/deep/a.txt")));
    const QString above = services.home.write(QStringLiteral("Desktop/a.txt"));
    EXPECT_EQ(engine.manager.canProtectItem(above).errorMessage, QStringLiteral("Item is already protected"));
}

TEST_F(ProtectItem, RecordWithTheSameNameInAnotherFolderDoesNotCount)
{
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "first"));
    const QString other = services.home.write(QStringLiteral("work/a.txt"), "second");
    EXPECT_TRUE(engine.manager.canProtectItem(other).canProtect);
    engine.protect(other);
    engine.unlock(0);
    engine.unlock(1);
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("Desktop/a.txt"))), "first");
    EXPECT_EQ(TemporaryHome::read(other), "second");
}

TEST_F(ProtectItem, UnwritableFoldersAreReportedByName)
{
    class Unwritable : public FileManagerDecorator
    {
    public:
        using FileManagerDecorator::FileManagerDecorator;
        [[nodiscard]] bool isWritableFile(const QString &path) const override
        {
            return std::ranges::none_of(refused, [&path](const QString &end) { return path.endsWith(end); });
        }
        QStringList refused;
    };
    Unwritable files(services.fileManager);
    EngineHarness engine(services, files);
    const QString path = services.home.write(QStringLiteral("Desktop/a.txt"));
    files.refused = {QStringLiteral("/tmp")};
    EXPECT_EQ(engine.manager.canProtectItem(path).errorMessage,
              QStringLiteral("Cannot write to temporary directory. Please check app permissions."));
    files.refused = {QStringLiteral("/Documents")};
    EXPECT_EQ(engine.manager.canProtectItem(path).errorMessage,
              QStringLiteral("Cannot write to Documents folder. Please check app permissions."));
    files.refused = {QStringLiteral("/Documents"), QStringLiteral("/tmp")};
    EXPECT_EQ(engine.manager.canProtectItem(path).errorMessage,
              QStringLiteral("Cannot write to temporary directory. Please check app permissions."));
}

TEST_F(ProtectItem, WhatCannotBeSealedIsRefusedBeforeTheQuestions)
{
    const EngineHarness engine(services);
    const QString longName(250, QLatin1Char('n'));
    EXPECT_EQ(engine.manager.canProtectItem(services.home.write(QStringLiteral("Desktop/") + longName)).errorMessage,
              QStringLiteral("The name of \"%1\" is too long to be protected. Please shorten it first.").arg(longName));
    const QString pipe = services.home.path(QStringLiteral("Desktop/pipe"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_EQ(engine.manager.canProtectItem(pipe).errorMessage,
              QStringLiteral("Could not protect \"pipe\" because it is neither a file nor a folder."));
    EXPECT_FALSE(engine.manager.canProtectItem(QStringLiteral("/proc/self/status")).canProtect)
        << "it cannot be moved out of its folder";
}

TEST_F(ProtectItem, NameTooLongForItsContainerIsRejectedAndNothingIsMoved)
{
    const QString path = services.home.write(QStringLiteral("Desktop/") + QString(248, QLatin1Char('n')), "mine");
    EngineHarness engine(services);
    EXPECT_THROW(engine.protect(path), FileError);
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(storedNames().isEmpty());
}

TEST_F(ProtectItem, PathThatTheCatalogueCannotStoreIsRejectedAndNothingIsMoved)
{
    // The name is the byte ff, which is not UTF-8.
    const QByteArray plain = QFile::encodeName(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    const QByteArray renamed = plain.left(plain.lastIndexOf('/') + 1) + '\xff';
    ASSERT_EQ(::rename(plain.constData(), renamed.constData()), 0);
    const QString path = services.home.path(QStringLiteral("Desktop/")) + QChar(0xdcff);
    services.panels.confirm = [path](const PlaceRequest &) { return path; };
    EngineHarness engine(services);
    ASSERT_TRUE(services.fileManager.fileExists(path));
    EXPECT_THROW(engine.protect(path), FileError);
    EXPECT_TRUE(services.fileManager.fileExists(path));
    EXPECT_TRUE(storedNames().isEmpty());
    services.fileManager.removeItem(path); // the home cannot remove such a name itself
    services.panels.confirm = {};
    engine.protect(services.home.write(QStringLiteral("Desktop/b.txt")));
    const EngineHarness restarted(services);
    EXPECT_EQ(restarted.count(), 1) << "later items can still be saved";
}
