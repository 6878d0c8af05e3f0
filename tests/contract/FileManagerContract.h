// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/FileManager.h"
#include "support/TemporaryHome.h"

#include <QFile>

#include <gmock/gmock.h>

namespace quillhaven::test {

using MakeFileManager = std::shared_ptr<FileManager> (*)();

/// The tests that every file manager must pass. Instantiate it with functions that make one.
class FileManagerContract : public ::testing::TestWithParam<MakeFileManager>
{
protected:
    using Kind = FileError::Kind;
    [[nodiscard]] QByteArray read(const QString &path) const
    {
        const FileBuffer buffer = files->readFile(path);
        return {reinterpret_cast<const char *>(buffer.bytes().data()), static_cast<qsizetype>(buffer.size())};
    }
    void write(const QString &path, const QByteArray &bytes)
    {
        files->writeFile(path, std::as_bytes(std::span(bytes.constData(), static_cast<size_t>(bytes.size()))));
    }
    void makeFolder() { home.write(QStringLiteral("folder/.inner"), "inner"); }
    template <typename Call>
    static std::optional<Kind> kindOf(Call call)
    {
        try {
            call();
        } catch (const FileError &error) {
            return error.kind();
        }
        return std::nullopt;
    }

    const TemporaryHome home;
    const QString a = home.path(QStringLiteral("a"));
    const QString b = home.path(QStringLiteral("b"));
    const QString absent = home.path(QStringLiteral("absent"));
    const QString folder = home.path(QStringLiteral("folder"));
    const QString inner = home.path(QStringLiteral("folder/.inner"));
    const QString link = home.path(QStringLiteral("link"));
    const std::shared_ptr<FileManager> files = GetParam()();
};

TEST_P(FileManagerContract, AWrittenFileHoldsTheBytesAndNoneOfThoseBefore)
{
    write(a, "0123456789");
    EXPECT_EQ(files->sizeOfItem(a), 10);
    EXPECT_EQ(read(a), "0123456789");
    write(a, "few");
    EXPECT_EQ(read(a), "few");
}

TEST_P(FileManagerContract, ALinkCountsByWhatItLeadsToAndARemovalTakesTheLinkItself)
{
    makeFolder();
    ASSERT_TRUE(QFile::link(folder, link));
    EXPECT_TRUE(files->fileExists(link));
    EXPECT_TRUE(files->isDirectory(link));
    EXPECT_NE(files->identityOfItem(link, Links::Keep), files->identityOfItem(link, Links::Follow));
    files->removeItem(link);
    EXPECT_EQ(read(inner), "inner");
    ASSERT_TRUE(QFile::link(absent, link));
    EXPECT_FALSE(files->fileExists(link));
}

TEST_P(FileManagerContract, ANewFileNeedsAFreeName)
{
    const auto create = [this](const QString &path) { files->createFile(path, std::as_bytes(std::span("new", 3))); };
    create(a);
    EXPECT_EQ(read(a), "new");
    write(b, "old");
    ASSERT_TRUE(QFile::link(absent, link));
    for (const QString &taken : {b, link, home.path()}) {
        EXPECT_EQ(kindOf([&] { create(taken); }), Kind::TargetExists) << taken.toStdString();
    }
    EXPECT_EQ(read(b), "old");
    EXPECT_FALSE(files->fileExists(absent));
}

TEST_P(FileManagerContract, AResolvedPathHasNoLinks)
{
    makeFolder();
    ASSERT_TRUE(QFile::link(folder, link));
    EXPECT_EQ(files->resolvedPath(link + QStringLiteral("/.inner")), files->resolvedPath(inner));
    EXPECT_EQ(files->resolvedPath(absent), absent);
}

TEST_P(FileManagerContract, WhatIsMovedToTheTrashLeavesItsPlaceAndAMissingItemIsAnError)
{
    makeFolder();
    write(a, "first");
    files->trashItem(a);
    files->trashItem(folder);
    EXPECT_FALSE(files->fileExists(a));
    EXPECT_FALSE(files->fileExists(folder));
    EXPECT_EQ(kindOf([&] { files->trashItem(a); }), Kind::NoSuchFile);
}

TEST_P(FileManagerContract, EqualContentsAreThoseOfACopy)
{
    makeFolder();
    write(a, "first");
    EXPECT_FALSE(files->contentsEqual(a, folder));
    EXPECT_FALSE(files->contentsEqual(a, absent));
    files->copyItem(a, b);
    EXPECT_TRUE(files->contentsEqual(a, b));
    write(b, "other");
    EXPECT_FALSE(files->contentsEqual(a, b));
    const QString copy = home.path(QStringLiteral("copy"));
    files->copyItem(folder, copy);
    EXPECT_TRUE(files->contentsEqual(folder, copy));
    home.write(QStringLiteral("copy/another"), "more");
    EXPECT_FALSE(files->contentsEqual(folder, copy));
}

TEST_P(FileManagerContract, AnItemHasADateAndItsVolumeSpace)
{
    const QDateTime before = QDateTime::currentDateTime().addSecs(-60);
    write(a, "first");
    EXPECT_GT(files->modificationDateOfItem(a), before);
    EXPECT_LT(files->modificationDateOfItem(a), before.addSecs(600));
    EXPECT_EQ(kindOf([&] { (void)files->modificationDateOfItem(absent); }), Kind::NoSuchFile);
    EXPECT_GT(files->availableSpace(home.path()), 0);
    EXPECT_EQ(kindOf([&] { (void)files->availableSpace(absent); }), Kind::NoSuchFile);
}

TEST_P(FileManagerContract, AMoveOrACopyNeedsAFreeNameAndOtherwiseLeavesBothItems)
{
    makeFolder();
    write(a, "first");
    write(b, "second");
    for (const QString &taken : {folder, b}) {
        EXPECT_EQ(kindOf([&] { files->moveItem(a, taken); }), Kind::TargetExists);
        EXPECT_EQ(kindOf([&] { files->copyItem(a, taken); }), Kind::TargetExists);
    }
    EXPECT_EQ(read(a), "first");
    EXPECT_EQ(read(b), "second");
    EXPECT_EQ(read(inner), "inner");
}

TEST_P(FileManagerContract, AMovedItemIsAtItsNewNameAloneAndACopiedOneAtBoth)
{
    makeFolder();
    const auto identity = files->identityOfItem(folder, Links::Keep);
    ASSERT_TRUE(identity.has_value());
    files->moveItem(folder, b);
    EXPECT_FALSE(files->fileExists(folder));
    EXPECT_EQ(files->identityOfItem(b, Links::Keep), identity);
    files->renameItem(b, folder);
    files->copyItem(folder, b);
    EXPECT_EQ(read(inner), "inner");
    EXPECT_EQ(read(b + QStringLiteral("/.inner")), "inner");
}

TEST_P(FileManagerContract, AReplacementTakesThePlaceOfWhatMustExist)
{
    write(a, "old");
    write(b, "new");
    files->replaceItemAt(a, b);
    EXPECT_EQ(read(a), "new");
    EXPECT_FALSE(files->fileExists(b));
    makeFolder();
    files->replaceItemAt(a, folder);
    EXPECT_EQ(read(a + QStringLiteral("/.inner")), "inner");
    EXPECT_FALSE(files->fileExists(folder));
    EXPECT_EQ(kindOf([&] { files->replaceItemAt(absent, a); }), Kind::NoSuchFile);
}

TEST_P(FileManagerContract, WhatIsAbsentCannotBeWorkedOn)
{
    EXPECT_EQ(kindOf([&] { (void)read(absent); }), Kind::NoSuchFile);
    EXPECT_EQ(kindOf([&] { files->removeItem(absent); }), Kind::NoSuchFile);
    EXPECT_EQ(kindOf([&] { files->moveItem(absent, b); }), Kind::NoSuchFile);
    EXPECT_EQ(kindOf([&] { (void)files->contentsOfDirectory(absent); }), Kind::NoSuchFile);
}

TEST_P(FileManagerContract, AFolderIsMadeWithThoseAboveItListedAndRemovedWithAllItHolds)
{
    files->createDirectory(folder + QStringLiteral("/deep"));
    files->createDirectory(folder);
    makeFolder();
    EXPECT_THAT(files->contentsOfDirectory(folder),
                ::testing::UnorderedElementsAre(QStringLiteral("deep"), QStringLiteral(".inner")));
    EXPECT_EQ(files->regularFilesBelow(folder), QList({FileEntry{inner, 5}}));
    files->removeItem(folder);
    EXPECT_FALSE(files->fileExists(folder));
}

TEST_P(FileManagerContract, AnOverwrittenFileIsChangedInPlaceAndNeverCut)
{
    write(a, "0123456789");
    const auto handle = files->openForOverwriting(a);
    handle->seek(4);
    handle->writeThrough(std::as_bytes(std::span("xy", 2)));
    handle->synchronizeFile();
    handle->closeFile();
    EXPECT_EQ(read(a), "0123xy6789");
    ASSERT_TRUE(QFile::link(a, link));
    EXPECT_THROW((void)files->openForOverwriting(link), FileError);
}

} // namespace quillhaven::test
