// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileError.h"
#include "platform/FileBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <ostream>
#include <utility>

namespace quillhaven {

namespace {

using Action = FileError::Action;
using Kind = FileError::Kind;

std::string sentence(int error, Action action, const QString &target = {})
{
    return FileError::fromErrno(error, action, QStringLiteral("/home/me/a.txt"), target)
        .errorDescription()
        .toStdString();
}

TEST(FileError, EachErrorNumberHasItsKind)
{
    const std::pair<int, Kind> table[] = {
        {ENOENT, Kind::NoSuchFile},
        {ENOTDIR, Kind::NoSuchFile},
        {EACCES, Kind::NoPermission},
        {EPERM, Kind::NoPermission},
        {EEXIST, Kind::TargetExists},
        {ENOTEMPTY, Kind::TargetExists},
        {ENOSPC, Kind::NoSpace},
        {EDQUOT, Kind::NoSpace},
        {EROFS, Kind::ReadOnlyVolume},
        {ENXIO, Kind::NotAFileOrFolder},
        {ENODEV, Kind::NotAFileOrFolder},
        {ENOMEM, Kind::TooLargeForMemory},
        {ENAMETOOLONG, Kind::InvalidName},
        {EILSEQ, Kind::InvalidName},
        {EIO, Kind::Other},
        {EBUSY, Kind::Other},
        {ELOOP, Kind::Other},
        {EINVAL, Kind::Other},
    };
    for (const auto &[number, kind] : table) {
        EXPECT_EQ(FileError::fromErrno(number, Action::Read, QStringLiteral("/a")).kind(), kind) << number;
    }
}

TEST(FileError, AMoveNamesTheItemAndTheFolder)
{
    const QString target = QStringLiteral("/data/quillhaven/1_original");
    EXPECT_EQ(sentence(EACCES, Action::Move, target), "You don't have permission to move \"a.txt\" to \"quillhaven\".");
    EXPECT_EQ(sentence(EEXIST, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because there is already an item named \"1_original\".");
    EXPECT_EQ(sentence(EROFS, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because the volume is read-only.");
    EXPECT_EQ(sentence(ENOENT, Action::Move, target),
              "Could not move \"a.txt\" to \"quillhaven\" because either the item or the folder does not exist.");
}

TEST(FileError, EachActionReadsAsASentence)
{
    EXPECT_EQ(sentence(ENOSPC, Action::Write), "There is not enough space on the disk to write \"a.txt\".");
    EXPECT_EQ(sentence(ENOENT, Action::Read), "Could not read \"a.txt\" because it does not exist.");
    EXPECT_EQ(sentence(ENOENT, Action::Write), "Could not write \"a.txt\" because \"me\" is not a folder that exists.");
    EXPECT_EQ(sentence(EPERM, Action::Replace), "You don't have permission to replace \"a.txt\".");
    EXPECT_EQ(sentence(EBUSY, Action::Remove), "Could not remove \"a.txt\": Device or resource busy.");
    EXPECT_EQ(sentence(EEXIST, Action::CreateFolder),
              "Could not create the folder \"a.txt\" because something else stands in its place.");
    EXPECT_EQ(sentence(EACCES, Action::List), "You don't have permission to open the folder \"a.txt\".");
    EXPECT_EQ(sentence(ENXIO, Action::Protect),
              "Could not protect \"a.txt\" because it is neither a file nor a folder.");
    EXPECT_EQ(sentence(ENOMEM, Action::Read),
              "Could not read \"a.txt\" because it is too large for the available memory.");
    EXPECT_EQ(sentence(ENAMETOOLONG, Action::Read),
              "Could not read \"a.txt\" because a name in its path is not valid or too long.");
}

TEST(FileError, ANameThatLooksLikeAPlaceholderStaysAsItIs)
{
    const QString path = QStringLiteral("/tmp/100%1 \"q\" %2");
    EXPECT_EQ(FileError::fromErrno(EIO, Action::Read, path).errorDescription().toStdString(),
              "Could not read \"100%1 \"q\" %2\": Input/output error.");
}

TEST(FileBuffer, HoldsZeroesAndMovesWithoutACopy)
{
    FileBuffer buffer(100'000);
    ASSERT_EQ(buffer.size(), 100'000U);
    EXPECT_TRUE(std::ranges::all_of(buffer.bytes(), [](std::byte byte) { return byte == std::byte{0}; }));
    buffer.bytes()[5] = std::byte{7};
    const std::byte *address = buffer.bytes().data();
    FileBuffer taken(std::move(buffer));
    EXPECT_EQ(taken.bytes().data(), address);
    FileBuffer assigned(10);
    assigned = std::move(taken);
    EXPECT_EQ(assigned.bytes().data(), address);
    EXPECT_EQ(assigned.bytes()[5], std::byte{7});
}

TEST(FileBuffer, GivesBackWhatIsReleasedAndKeepsEveryByteBehindIt)
{
    constexpr size_t mebibyte = size_t{1} << 20;
    FileBuffer buffer(7 * mebibyte + 5);
    std::ranges::fill(buffer.bytes(), std::byte{7});
    buffer.release(3 * mebibyte);
    EXPECT_EQ(buffer.bytes()[0], std::byte{0});
    EXPECT_EQ(std::ranges::count(buffer.bytes().subspan(3 * mebibyte), std::byte{7}),
              static_cast<std::ptrdiff_t>(4 * mebibyte + 5));
    buffer.release(mebibyte);
    buffer.release(buffer.size());
    EXPECT_EQ(buffer.bytes()[buffer.size() - 1], std::byte{7}) << "a piece of a huge page stays";
    FileBuffer empty;
    empty.release(0);
}

TEST(FileBuffer, FitsSaysNoToMoreThanThereIs)
{
    EXPECT_TRUE(FileBuffer::fits(0));
    EXPECT_TRUE(FileBuffer::fits(4096));
    EXPECT_FALSE(FileBuffer::fits(size_t{1} << 50));
    EXPECT_FALSE(FileBuffer::fits(std::numeric_limits<size_t>::max()));
    EXPECT_THROW(FileBuffer(std::numeric_limits<size_t>::max() / 2), std::bad_alloc);
}

} // namespace

} // namespace quillhaven
