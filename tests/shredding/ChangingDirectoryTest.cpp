// SPDX-License-Identifier: GPL-3.0-or-later

#include "ShredFixture.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class ChangingDirectory : public ShredDirectoryTest
{
protected:
    /// Runs a function when the folder has been listed.
    void afterTheListing(std::function<void()> action)
    {
        files.after = [action = std::move(action)](const QString &call, const QString &) {
            if (call == QStringLiteral("list")) {
                action();
            }
        };
    }
};

} // namespace

TEST_F(ChangingDirectory, FileThatGrowsOrShrinksMeanwhileIsOverwrittenUpToItsFirstSize)
{
    const QString longer = inFolder(QStringLiteral("longer"), "12345");
    const QString shorter = inFolder(QStringLiteral("shorter"), "12345");
    const QStringList seen{witness(longer), witness(shorter)};
    afterTheListing([&] {
        QFile file(longer);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("more");
        ASSERT_TRUE(QFile::resize(shorter, 2));
    });
    shred(folder);
    EXPECT_EQ(read(seen.at(0)).size(), 9);
    EXPECT_TRUE(read(seen.at(0)).endsWith("more"));
    EXPECT_FALSE(read(seen.at(0)).startsWith("12345"));
    expectOverwritten(seen.at(1), 5);
    EXPECT_FALSE(TemporaryHome::exists(folder));
}

TEST_F(ChangingDirectory, FileThatDisappearsMeanwhileStopsTheRun)
{
    inFolder(QStringLiteral("a"));
    const QString b = inFolder(QStringLiteral("b"));
    inFolder(QStringLiteral("c"));
    afterTheListing([&] { ASSERT_TRUE(QFile::remove(b)); });
    EXPECT_EQ(failureOf([&] { shred(folder); }),
              QStringLiteral("Could not overwrite \"b\" because it does not exist."));
    EXPECT_EQ(remaining(folder), QStringList({QStringLiteral("c")}));
    EXPECT_EQ(read(folder + QStringLiteral("/c")), "secret");
}

TEST_F(ChangingDirectory, LinkThatReplacesAFileMeanwhileIsNotFollowed)
{
    const QString outside = write(QStringLiteral("outside"), "kept");
    const QString a = inFolder(QStringLiteral("a"));
    afterTheListing([&] {
        ASSERT_TRUE(QFile::remove(a));
        ASSERT_TRUE(QFile::link(outside, a));
    });
    EXPECT_EQ(failureOf([&] { shred(folder); }),
              QStringLiteral("Could not overwrite \"a\" because it is only a link. Choose the item it leads to "
                             "instead."));
    EXPECT_EQ(read(outside), "kept");
}

TEST_F(ChangingDirectory, FileCreatedMeanwhileIsRemovedWithTheFolderWithoutBeingOverwritten)
{
    inFolder(QStringLiteral("a"));
    QString seen;
    afterTheListing([&] { seen = witness(inFolder(QStringLiteral("new"), "new")); });
    shred(folder);
    EXPECT_EQ(read(seen), "new");
    EXPECT_FALSE(TemporaryHome::exists(folder));
}
