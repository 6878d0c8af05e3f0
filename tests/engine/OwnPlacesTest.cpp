// SPDX-License-Identifier: GPL-3.0-or-later

// What the program needs, or what belongs to it, is refused before anything moves, with a sentence that says why.

#include "backup/CloudFolder.h"
#include "support/EngineHarness.h"
#include "support/Paths.h"

#include <QDir>
#include <QDirIterator>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class OwnPlacesTest : public ::testing::Test
{
protected:
    /// Both the question and the engine itself refuse it with this end of a sentence, and nothing has changed.
    void expectRefused(const QString &path, const QString &reason)
    {
        SCOPED_TRACE(path.toStdString());
        const QStringList before = entries();
        const auto answer = engine.manager.canProtectItem(path);
        EXPECT_FALSE(answer.canProtect);
        const QString sentence = answer.errorMessage.value_or(QString());
        EXPECT_TRUE(sentence.contains(reason)) << sentence.toStdString();
        QString description;
        EXPECT_EQ(
            engineErrorOf(
                [&] { runTask(engine.manager.protectItemWithAccessibleURL(path, QStringLiteral("Abcdefg1"), false)); },
                &description),
            QuillhavenError::accessDenied);
        EXPECT_EQ(description, sentence);
        EXPECT_EQ(entries(), before);
    }
    [[nodiscard]] QStringList entries() const
    {
        QStringList all;
        QDirIterator each(services.home.path(QString()), QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                          QDirIterator::Subdirectories);
        while (each.hasNext()) {
            all.append(each.next());
        }
        all.sort();
        return all;
    }

    TestPlatform services;
    EngineHarness engine{services};
    const UserDirectories &directories = engine.platform.directories;
    const QString storage = directories.applicationSupport + QStringLiteral("/quillhaven");
    const QString needed = QStringLiteral("because Quillhaven needs it at its place");
    const QString contains = QStringLiteral("because it contains ");
    const QString own = QStringLiteral("because it belongs to Quillhaven itself");
};

} // namespace

TEST_F(OwnPlacesTest, FolderThatTheProgramNeedsIsRefused)
{
    QDir().mkpath(storage);
    for (const QString &path :
         {storage, directories.documents, directories.configuration, directories.temporary, directories.home}) {
        expectRefused(path, needed);
    }
}

TEST_F(OwnPlacesTest, FolderAboveSuchAFolderIsRefused)
{
    QDir().mkpath(storage);
    expectRefused(directories.applicationSupport, contains);
    expectRefused(parentDirectory(directories.home), contains);
    expectRefused(QStringLiteral("/"), contains);
}

TEST_F(OwnPlacesTest, LinkedFolderOnTheWayDoesNotHideIt)
{
    const QString linked = services.home.path(QStringLiteral("linked"));
    ASSERT_TRUE(QFile::link(directories.home, linked));
    expectRefused(linked + QStringLiteral("/") + QDir(directories.home).relativeFilePath(directories.documents),
                  needed);
}

TEST_F(OwnPlacesTest, FolderThatHoldsTheTargetOfALinkedDocumentsFolderIsRefused)
{
    const QString target = services.home.path(QStringLiteral("Synced/Docs"));
    ASSERT_TRUE(QDir().mkpath(target) && QDir().rmdir(directories.documents));
    ASSERT_TRUE(QFile::link(target, directories.documents));
    expectRefused(services.home.path(QStringLiteral("Synced")), contains);
    expectRefused(target, needed);
}

TEST_F(OwnPlacesTest, WhatLiesInAPrivateCopyIsRefusedThroughALinkToIt)
{
    services.home.write(QStringLiteral("papers/will.txt"), "will");
    engine.protect(services.home.path(QStringLiteral("papers")));
    const QString link = services.home.path(QStringLiteral("shortcut"));
    ASSERT_TRUE(QFile::link(engine.item().originalBackupPath, link));
    expectRefused(link + QStringLiteral("/will.txt"), own);
}

TEST_F(OwnPlacesTest, PrivateCopySettingsAndTemporaryFilesAreRefused)
{
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    expectRefused(engine.item().originalBackupPath, own);
    const QString settings = directories.configuration + QStringLiteral("/settings.db");
    const QString temporary = directories.temporary + QStringLiteral("/archive.tar");
    for (const QString &path : {settings, temporary}) {
        QDir().mkpath(parentDirectory(path));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.close();
        expectRefused(path, own);
    }
}

TEST_F(OwnPlacesTest, ContainerOfAnItemIsRefusedAndOneOfNoItemIsNot)
{
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    expectRefused(engine.item().containerPath, QStringLiteral("because it is the encrypted copy of \"a.txt\""));
    const QString other = services.home.write(QStringLiteral("Documents/b.txt.secured"), "somebody's");
    EXPECT_TRUE(engine.manager.canProtectItem(other).canProtect);
}

TEST_F(OwnPlacesTest, CloudFolderAndTheBackupOfAnItemAreRefused)
{
    const CloudFolder cloud(services);
    cloud.make();
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    cloud.writeBackup(engine.item().id, "sealed");
    cloud.writeBackup(QStringLiteral("of-another-machine"), "sealed");
    expectRefused(cloud.path(), needed);
    expectRefused(cloud.backup(engine.item().id), QStringLiteral("because it is the encrypted copy of \"a.txt\""));
    EXPECT_TRUE(engine.manager.canProtectItem(cloud.backup(QStringLiteral("of-another-machine"))).canProtect);
}

TEST_F(OwnPlacesTest, WhatLiesInDocumentsIsTheUsers)
{
    const QString path = services.home.write(QStringLiteral("Documents/letter.txt"), "mine");
    EXPECT_TRUE(engine.manager.canProtectItem(path).canProtect);
    engine.protect(path);
    EXPECT_EQ(engine.count(), 1);
}

TEST_F(OwnPlacesTest, ShreddingOfWhatTheProgramNeedsIsRefusedBeforeAnythingIsDestroyed)
{
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    const auto ignore = [](const QString &, double) {};
    const QStringList before = entries();
    for (const QString &path :
         {storage, storage + QLatin1Char('/'), engine.item().originalBackupPath, directories.applicationSupport,
          directories.home, directories.configuration, QStringLiteral("/")}) {
        SCOPED_TRACE(path.toStdString());
        const QString other = services.home.write(QStringLiteral("Desktop/other"), "other");
        QString description;
        const auto shred = [&] { runTask(engine.manager.shredUnprotectedItems({other, path}, ignore)); };
        EXPECT_EQ(engineErrorOf(shred, &description), QuillhavenError::accessDenied);
        EXPECT_TRUE(description.contains(QStringLiteral("cannot be shredded because"))) << description.toStdString();
        EXPECT_EQ(TemporaryHome::read(other), "other");
        QFile::remove(other);
        EXPECT_EQ(entries(), before);
    }
}

TEST_F(OwnPlacesTest, AFolderOfTheUsersIsShredded)
{
    const QString path = services.home.write(QStringLiteral("Desktop/folder/a.txt"), "mine");
    runTask(engine.manager.shredUnprotectedItems({parentDirectory(path)}, [](const QString &, double) {}));
    EXPECT_FALSE(QFile::exists(parentDirectory(path)));
}
