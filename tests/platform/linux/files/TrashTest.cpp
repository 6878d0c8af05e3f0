// SPDX-License-Identifier: GPL-3.0-or-later

// The trash of other volumes than the home's.

#include "FileFixture.h"
#include "platform/linux/volumes/DiskImage.h"

namespace quillhaven::test {

namespace {

class TrashTest : public ::testing::Test
{
protected:
    TrashTest() { QDir().mkpath(volume()); }

    [[nodiscard]] QString volume(const QString &relative = {}) const
    {
        return home.path(QStringLiteral("stick")) + (relative.isEmpty() ? QString() : QLatin1Char('/') + relative);
    }
    [[nodiscard]] QString trash(const QString &relative) const
    {
        return volume(QStringLiteral(".Trash-%1/").arg(getuid()) + relative);
    }
    void mountImage() { m_image.emplace(QStringLiteral("ext4"), home.path(QStringLiteral("image")), volume()); }
    void makeReadOnly() const
    {
        ASSERT_EQ(::mount(nullptr, QFile::encodeName(volume()).constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr),
                  0)
            << strerror(errno);
    }
    /// Why the letter cannot go to the trash, in which case it stays.
    std::string failure()
    {
        try {
            files.trashItem(letter());
        } catch (const FileError &error) {
            EXPECT_EQ(TemporaryHome::read(letter()), "dear");
            return error.errorDescription().toStdString();
        }
        return {};
    }
    [[nodiscard]] QString letter() const { return volume(QStringLiteral("papers/letter.txt")); }
    void writeLetter() const { home.write(QStringLiteral("stick/papers/letter.txt"), "dear"); }

    TemporaryHome home;
    LinuxFileManager files;

private:
    std::optional<DiskImage> m_image;
};

TEST_F(TrashTest, AFileOnAnotherVolumeGoesToTheTrashThatIsMadeThere)
{
    mountImage();
    writeLetter();
    files.trashItem(letter());
    EXPECT_FALSE(QFile::exists(letter()));
    EXPECT_EQ(TemporaryHome::read(trash(QStringLiteral("files/letter.txt"))), "dear");
    EXPECT_TRUE(TemporaryHome::read(trash(QStringLiteral("info/letter.txt.trashinfo")))
                    .contains("Path=papers/letter.txt\n")) // so that a file manager can put it back
        << TemporaryHome::read(trash(QStringLiteral("info/letter.txt.trashinfo"))).constData();
}

TEST_F(TrashTest, OnAReadOnlyVolumeTheFileStaysAndTheReasonNamesIt)
{
    mountImage();
    writeLetter();
    makeReadOnly();
    EXPECT_EQ(failure(), "Could not move \"letter.txt\" to the trash because the volume is read-only.");
}

TEST_F(TrashTest, OnAReadOnlyVolumeWithATrashTheFileStaysAndTheReasonNamesIt)
{
    mountImage();
    home.write(QStringLiteral("stick/old.txt"), "old");
    files.trashItem(volume(QStringLiteral("old.txt")));
    writeLetter();
    makeReadOnly();
    EXPECT_EQ(failure(), "Could not move \"letter.txt\" to the trash because the volume is read-only.");
}

TEST_F(TrashTest, OnAVolumeWithoutATrashTheFileStaysAndTheReasonNamesIt)
{
    const Mount mount(QStringLiteral("tmpfs"), volume(), "tmpfs", 0);
    writeLetter();
    EXPECT_EQ(failure(),
              "Could not move \"letter.txt\" to the trash: its volume has no trash, and none can be made there.");
}

} // namespace

} // namespace quillhaven::test
