// SPDX-License-Identifier: GPL-3.0-or-later

#include "FileFixture.h"
#include "platform/linux/files/FilePaths.h"

#include <fcntl.h>

namespace quillhaven::test {

namespace {

/// Names that are not valid UTF-8, which Linux allows. The text of a listing can be converted back to the name.
class UnnamableFilesTest : public FileTest
{
protected:
    void SetUp() override
    {
        FileTest::SetUp();
        ASSERT_EQ(mkdir(m_folder.constData(), 0700), 0);
        ASSERT_EQ(mkdir((m_folder + "/sub\xFF").constData(), 0700), 0);
        for (const QByteArray &name : {QByteArray("/caf\xE9"), QByteArray("/sub\xFF/\xC3")}) {
            const int fd = ::open((m_folder + name).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            ASSERT_GE(fd, 0);
            ASSERT_EQ(::write(fd, "mine", 4), 4);
            ASSERT_EQ(::close(fd), 0);
        }
    }
    void TearDown() override
    {
        files.removeItem(folder()); // QTemporaryDir does not remove such names
        FileTest::TearDown();
    }

    [[nodiscard]] QString folder() const { return decodedPath(m_folder); }
    [[nodiscard]] QString in(const QByteArray &name) const { return decodedPath(m_folder + '/' + name); }
    QByteArray contentOf(const QString &path) const
    {
        const FileBuffer buffer = files.readFile(path);
        return {reinterpret_cast<const char *>(buffer.bytes().data()), static_cast<qsizetype>(buffer.size())};
    }

private:
    const QByteArray m_folder = bytesOf(home.path()) + "/f\x80";
};

TEST_F(UnnamableFilesTest, EveryListedNameCanBeOpened)
{
    QStringList names = files.contentsOfDirectory(folder());
    names.sort();
    ASSERT_EQ(names.size(), 2);
    const QString file = folder() + QLatin1Char('/') + names.first();
    const QString subfolder = folder() + QLatin1Char('/') + names.last();
    EXPECT_EQ(contentOf(file), "mine");
    EXPECT_TRUE(files.isWritableFile(file));
    EXPECT_EQ(files.sizeOfItem(file), 4);
    EXPECT_TRUE(files.identityOfItem(file, Links::Keep).has_value());
    EXPECT_TRUE(files.isDirectory(subfolder));
    EXPECT_FALSE(files.isDirectory(file));
    EXPECT_EQ(files.contentsOfDirectory(subfolder).size(), 1);
}

TEST_F(UnnamableFilesTest, EveryRegularFileBelowIsFoundAndCanBeOverwrittenRenamedAndRemoved)
{
    const QList<FileEntry> entries = files.regularFilesBelow(folder());
    ASSERT_EQ(entries.size(), 2);
    for (const FileEntry &entry : entries) {
        EXPECT_TRUE(files.fileExists(entry.path));
        EXPECT_NO_THROW(files.openForOverwriting(entry.path)->closeFile());
        const QString renamed = entry.path + QStringLiteral("-2");
        files.renameItem(entry.path, renamed);
        files.removeItem(renamed);
        EXPECT_FALSE(files.fileExists(renamed));
    }
}

TEST_F(UnnamableFilesTest, WritingAndMovingUseExactlyTheName)
{
    files.writeFile(in("new\xFE"), std::as_bytes(std::span("text", 4)));
    EXPECT_EQ(::access((bytesOf(home.path()) + "/f\x80/new\xFE").constData(), F_OK), 0);
    files.moveItem(folder(), other(QStringLiteral("moved")));
    EXPECT_EQ(contentOf(decodedPath(bytesOf(other(QStringLiteral("moved"))) + "/new\xFE")), "text");
    files.moveItem(other(QStringLiteral("moved")), folder());
    EXPECT_EQ(contentOf(in("caf\xE9")), "mine");
}

} // namespace

} // namespace quillhaven::test
