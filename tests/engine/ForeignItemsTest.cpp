// SPDX-License-Identifier: GPL-3.0-or-later

// What someone else has put at an item's place, or under the name of its container, while the item was locked.

#include "engine/ProtectedFileFixture.h"

#include <QDir>
#include <QSignalSpy>

#include <functional>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A way in which a locked item comes back to its place.
struct Return
{
    const char *name;
    std::function<void(EngineHarness &engine)> perform;
};

void PrintTo(const Return &way, std::ostream *out)
{
    *out << way.name;
}

class ForeignItems : public ProtectedFileTest
{
protected:
    [[nodiscard]] QStringList namesOnDesktop() const { return namesIn(QStringLiteral("Desktop")); }
    [[nodiscard]] QStringList namesIn(const QString &folder) const
    {
        return QDir(services.home.path(folder)).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QString onDesktop(const QString &name) const
    {
        return services.home.path(QStringLiteral("Desktop/") + name);
    }
    void replacePlaceholder(const QByteArray &bytes) const
    {
        services.home.write(QStringLiteral("Desktop/a.txt"), bytes);
    }

    QSignalSpy told{&engine.manager, &QuillhavenManager::keptAside};
    const QString aside = onDesktop(QStringLiteral("a (kept aside).txt"));
    const QString containerPath = services.home.path(QStringLiteral("Documents/a.txt.secured"));
};

class ForeignItemsReturn : public ForeignItems, public ::testing::WithParamInterface<Return>
{
protected:
    void giveBack() { GetParam().perform(engine); }
};

INSTANTIATE_TEST_SUITE_P(
    Ways, ForeignItemsReturn,
    ::testing::Values(Return{"Unlock", [](EngineHarness &engine) { engine.unlock(); }},
                      Return{"Remove", [](EngineHarness &engine) { engine.remove(); }},
                      Return{"BulkUnlock",
                             [](EngineHarness &engine) {
                                 runTask(engine.manager.bulkUnlockItems(engine.manager.protectedItems(),
                                                                        [](const QString &, double) {}));
                             }},
                      Return{"BulkRemove",
                             [](EngineHarness &engine) {
                                 runTask(engine.manager.bulkRemoveProtection(engine.manager.protectedItems(),
                                                                             [](const QString &, double) {}));
                             }}),
    [](const auto &info) { return std::string(info.param.name); });

TEST_P(ForeignItemsReturn, AFileSavedOverThePlaceholderIsKeptBesideTheItemAndReportedOnce)
{
    startLocked();
    replacePlaceholder("three hours of new work");
    giveBack();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(aside), "three hours of new work");
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.at(0), (QVariantList{path, aside}));
}

TEST_P(ForeignItemsReturn, AFolderAtThePlaceIsKeptWithAllInIt)
{
    startLocked();
    QFile::remove(path);
    services.home.write(QStringLiteral("Desktop/a.txt/thesis.txt"), "thesis");
    giveBack();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(aside + QStringLiteral("/thesis.txt")), "thesis");
}

TEST_P(ForeignItemsReturn, ALinkAtThePlaceIsKeptWhateverItLeadsTo)
{
    startLocked();
    QFile::remove(path);
    ASSERT_TRUE(QFile::link(services.home.path(QStringLiteral("nowhere")), path));
    services.panels.answer = [this](const OpenPanelRequest &) { return std::optional(path); };
    giveBack();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_FALSE(QFileInfo(path).isSymLink());
    EXPECT_EQ(QFile::symLinkTarget(aside), services.home.path(QStringLiteral("nowhere")));
}

TEST_P(ForeignItemsReturn, NothingIsKeptOfAPlaceholderOrAPieceOfOne)
{
    startLocked();
    replacePlaceholder(placeholderText.toUtf8().left(20));
    giveBack();
    EXPECT_EQ(namesOnDesktop(), QStringList(QStringLiteral("a.txt")));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(told.isEmpty());
}

TEST_P(ForeignItemsReturn, ADuplicateOfThePrivateCopyIsNotKept)
{
    startLocked();
    // As after a move from another file system that was interrupted between the copy and the removal of its source.
    services.fileManager.removeItem(path);
    services.fileManager.copyItem(engine.item().originalBackupPath, path);
    giveBack();
    EXPECT_EQ(namesOnDesktop(), QStringList(QStringLiteral("a.txt")));
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_TRUE(told.isEmpty());
}

TEST_P(ForeignItemsReturn, WithoutAPrivateCopyWhatIsAtThePlaceStaysThere)
{
    startLocked();
    replacePlaceholder("new");
    QFile::remove(engine.item().originalBackupPath);
    EXPECT_ANY_THROW(giveBack());
    EXPECT_EQ(TemporaryHome::read(path), "new");
    EXPECT_EQ(namesOnDesktop(), QStringList(QStringLiteral("a.txt")));
}

TEST_P(ForeignItemsReturn, WhatCannotBeKeptStaysAndTheItemRemainsLocked)
{
    startLocked();
    replacePlaceholder("new");
    hooks.before = failing("renameItem", EACCES);
    EXPECT_ANY_THROW(giveBack());
    EXPECT_EQ(TemporaryHome::read(path), "new");
    EXPECT_EQ(TemporaryHome::read(engine.item().originalBackupPath), "mine");
    EXPECT_FALSE(engine.item().isMounted);
}

TEST_F(ForeignItems, EachOneThatIsKeptHasANameOfItsOwn)
{
    startLocked();
    for (const char *bytes : {"first", "second"}) {
        replacePlaceholder(bytes);
        engine.unlock();
        engine.lock();
    }
    EXPECT_EQ(TemporaryHome::read(aside), "first");
    EXPECT_EQ(TemporaryHome::read(onDesktop(QStringLiteral("a (kept aside 2).txt"))), "second");
}

TEST_F(ForeignItems, ALongNameIsShortenedToFit)
{
    const QString name = QString(117, QChar(0x00e4)) + QStringLiteral(".txt"); // 238 bytes
    services.home.write(QStringLiteral("Desktop/") + name, "mine");
    engine.protect(onDesktop(name));
    services.home.write(QStringLiteral("Desktop/") + name, "new");
    engine.unlock();
    ASSERT_EQ(told.size(), 1);
    const QString kept = told.at(0).at(1).toString();
    EXPECT_TRUE(kept.endsWith(QStringLiteral(" (kept aside).txt"))) << kept.toStdString();
    EXPECT_EQ(TemporaryHome::read(kept), "new");
    EXPECT_EQ(TemporaryHome::read(onDesktop(name)), "mine");
}

TEST_F(ForeignItems, ALockKeepsTheDataOfAnInterruptedLockBesideThatOfTheNewFile)
{
    startUnlocked("old");
    const QString privateCopy = engine.item().originalBackupPath;
    ASSERT_TRUE(QFile::rename(path, privateCopy));
    replacePlaceholder("new");
    engine.lock();
    EXPECT_EQ(TemporaryHome::read(privateCopy), "new");
    EXPECT_EQ(TemporaryHome::read(privateCopy + QStringLiteral("_1")), "old");
}

TEST_F(ForeignItems, AFileThatComesToThePlaceDuringAProtectionStays)
{
    services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    hooks.before = [this](const char *call, const QString &at) {
        if (qstrcmp(call, "writeFile") == 0 && at == containerPath) {
            replacePlaceholder("saved meanwhile");
        }
    };
    engine.protect(path);
    hooks.before = nullptr;
    ASSERT_EQ(engine.count(), 1);
    EXPECT_EQ(TemporaryHome::read(path), "saved meanwhile");
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(aside), "saved meanwhile");
}

TEST_F(ForeignItems, AFileThatComesToThePlaceDuringALockStays)
{
    startUnlocked();
    hooks.after = [this](const char *call, const QString &) {
        if (qstrcmp(call, "moveItem") == 0) {
            replacePlaceholder("saved meanwhile");
        }
    };
    engine.lock();
    hooks.after = nullptr;
    EXPECT_FALSE(engine.item().isMounted);
    EXPECT_EQ(TemporaryHome::read(path), "saved meanwhile");
    engine.unlock();
    EXPECT_EQ(TemporaryHome::read(path), "mine");
    EXPECT_EQ(TemporaryHome::read(aside), "saved meanwhile");
}

TEST_F(ForeignItems, AFileInPlaceOfTheContainerOfAnotherItemGoesToTheTrash)
{
    startLocked();
    services.home.write(QStringLiteral("Documents/a.txt.secured"), "someone's own");
    engine.protect(services.home.write(QStringLiteral("papers/a.txt"), "another"));
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(TemporaryHome::read(containerPath).startsWith("QUILLHAVEN"));
}

TEST_F(ForeignItems, AFileWithTheNameOfANewContainerGoesToTheTrash)
{
    services.home.write(QStringLiteral("Documents/a.txt.secured"), "someone's own");
    startLocked();
    EXPECT_TRUE(TemporaryHome::read(containerPath).startsWith("QUILLHAVEN"));
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.at(0), (QVariantList{containerPath, QString()}));
    const QDir trash(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files"));
    const QStringList trashed = trash.entryList(QDir::Files);
    ASSERT_FALSE(trashed.isEmpty());
    EXPECT_EQ(TemporaryHome::read(trash.filePath(trashed.first())), "someone's own");
}

TEST_F(ForeignItems, WithoutATrashAFileWithTheNameOfANewContainerIsKeptBesideIt)
{
    services.home.write(QStringLiteral("Documents/a.txt.secured"), "someone's own");
    hooks.before = failing("trashItem", EIO);
    startLocked();
    EXPECT_TRUE(TemporaryHome::read(containerPath).startsWith("QUILLHAVEN"));
    EXPECT_EQ(TemporaryHome::read(services.home.path(QStringLiteral("Documents/a.txt (kept aside).secured"))),
              "someone's own");
    EXPECT_EQ(told.size(), 1);
}

TEST_F(ForeignItems, TheContainerOfAnotherItemWithTheSameNameIsReplaced)
{
    startLocked();
    engine.protect(services.home.write(QStringLiteral("papers/a.txt"), "another"));
    EXPECT_EQ(engine.count(), 2);
    EXPECT_EQ(namesIn(QStringLiteral("Documents")), QStringList(QStringLiteral("a.txt.secured")));
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(ForeignItems, AFolderOrALinkWithTheNameOfANewContainerIsRefusedBeforeAnythingMoves)
{
    services.home.write(QStringLiteral("Desktop/a.txt"), "mine");
    const QString target = services.home.write(QStringLiteral("other.txt"), "other");
    for (const bool isLink : {false, true}) {
        if (isLink) {
            QDir().rmdir(containerPath);
            ASSERT_TRUE(QFile::link(target, containerPath));
        } else {
            QDir().mkdir(containerPath);
        }
        try {
            engine.protect(path);
            ADD_FAILURE() << "protected over a " << (isLink ? "link" : "folder");
        } catch (const FileError &error) {
            const QString sentence = error.errorDescription();
            EXPECT_TRUE(sentence.contains(QStringLiteral("\"a.txt.secured\""))) << sentence.toStdString();
            EXPECT_TRUE(sentence.contains(isLink ? QStringLiteral("a link") : QStringLiteral("a folder")));
        }
        EXPECT_EQ(TemporaryHome::read(path), "mine");
        EXPECT_EQ(engine.count(), 0);
    }
    EXPECT_EQ(TemporaryHome::read(target), "other");
}

TEST_F(ForeignItems, AFolderWithTheNameOfAContainerIsNeitherRemovedNorShredded)
{
    startLocked();
    QFile::remove(containerPath);
    services.home.write(QStringLiteral("Documents/a.txt.secured/thesis.txt"), "thesis");
    engine.remove();
    EXPECT_EQ(TemporaryHome::read(containerPath + QStringLiteral("/thesis.txt")), "thesis");
    ASSERT_TRUE(QDir().rename(containerPath, containerPath + QStringLiteral("-away")));
    engine.protect(path);
    QFile::remove(containerPath);
    ASSERT_TRUE(QDir().rename(containerPath + QStringLiteral("-away"), containerPath));
    runTask(engine.manager.shredProtectedItem(engine.item(), [](const QString &, double) {}));
    EXPECT_EQ(TemporaryHome::read(containerPath + QStringLiteral("/thesis.txt")), "thesis");
}

TEST_F(ForeignItems, ARemovalLeavesAFileThatIsNoContainer)
{
    startLocked();
    services.home.write(QStringLiteral("Documents/a.txt.secured"), "someone's own");
    engine.remove();
    EXPECT_EQ(engine.count(), 0);
    EXPECT_EQ(TemporaryHome::read(containerPath), "someone's own");
}

TEST_F(ForeignItems, AShredDestroysTheItemAndNotWhatHasTakenItsPlaceOrItsContainersName)
{
    startLocked();
    replacePlaceholder("new work");
    services.home.write(QStringLiteral("Documents/a.txt.secured"), "someone's own");
    engine.itemPassword.reset(); // The question for it is cancelled, so nothing is unlocked.
    runTask(engine.manager.shredProtectedItem(engine.item(), [](const QString &, double) {}));
    EXPECT_EQ(engine.count(), 0);
    EXPECT_TRUE(namesIn(QStringLiteral(".local/share/quillhaven")).isEmpty());
    EXPECT_EQ(TemporaryHome::read(aside), "new work");
    EXPECT_EQ(TemporaryHome::read(containerPath), "someone's own");
}

} // namespace
