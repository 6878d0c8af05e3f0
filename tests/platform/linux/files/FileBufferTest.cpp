// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/FileBuffer.h"

#include "platform/linux/files/ControlGroupMemory.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

namespace quillhaven {

namespace {

using test::TemporaryHome;

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

TEST(FileBuffer, ReleasedBytesAreLostAndAllLaterOnesKept)
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
    EXPECT_EQ(buffer.bytes()[buffer.size() - 1], std::byte{7}) << "a partial huge page is kept";
    FileBuffer empty;
    empty.release(0);
}

TEST(FileBuffer, FitsIsFalseForMoreThanTheAvailableMemory)
{
    EXPECT_TRUE(FileBuffer::fits(0));
    EXPECT_TRUE(FileBuffer::fits(4096));
    EXPECT_FALSE(FileBuffer::fits(size_t{1} << 50));
    EXPECT_FALSE(FileBuffer::fits(std::numeric_limits<size_t>::max()));
    EXPECT_THROW(FileBuffer(std::numeric_limits<size_t>::max() / 2), std::bad_alloc);
}

/// A process in the group "/user/app", and the limits of the groups.
class ControlGroups : public ::testing::Test
{
protected:
    void write(const char *path, const QByteArray &content)
    {
        m_home.write(QStringLiteral("groups/") + QLatin1String(path), content);
    }
    std::optional<size_t> left() const
    {
        return memoryLeftInControlGroups(m_membership, m_home.path(QStringLiteral("groups")));
    }

    TemporaryHome m_home;
    QString m_membership = m_home.write(QStringLiteral("cgroup"), "4:memory:/other\n0::/user/app\n");
};

TEST_F(ControlGroups, WithoutALimitNothingIsSaid)
{
    EXPECT_EQ(left(), std::nullopt);
    write("user/app/memory.max", "max\n");
    write("user/app/memory.current", "1000\n");
    write("other/memory.max", "5\n");
    EXPECT_EQ(left(), std::nullopt);
    m_membership = m_home.path(QStringLiteral("missing"));
    EXPECT_EQ(left(), std::nullopt);
}

TEST_F(ControlGroups, TheLeastOfTheGroupAndThoseAboveItCounts)
{
    write("user/app/memory.max", "10000\n");
    write("user/app/memory.current", "1000\n");
    EXPECT_EQ(left(), 9000);
    write("user/memory.max", "12000\n");
    write("user/memory.current", "9000\n");
    EXPECT_EQ(left(), 3000);
    write("memory.max", "4000\n");
    write("memory.current", "3500\n");
    EXPECT_EQ(left(), 500);
    write("memory.current", "4500\n");
    EXPECT_EQ(left(), 0);
}

TEST_F(ControlGroups, CachedFilesCountAsFree)
{
    write("user/app/memory.max", "10000\n");
    write("user/app/memory.current", "9000\n");
    write("user/app/memory.stat", "anon 3000\nfile 6000\ninactive_file 4000\nactive_file 1500\n");
    EXPECT_EQ(left(), 6500);
}

} // namespace

} // namespace quillhaven
