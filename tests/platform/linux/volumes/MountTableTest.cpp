// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/MountTable.h"

#include <gtest/gtest.h>

#include <sys/sysmacros.h>

namespace quillhaven::test {
namespace {

const QByteArray table =
    "22 27 0:21 / /proc rw,relatime - proc proc rw\n"
    "36 27 259:2 /sub /mnt/my\\040disk\\134a rw,noatime master:1 shared:7 - ext3 /dev/root rw,errors=continue\n"
    "361 27 0:42 /@home /home rw - btrfs /dev/mapper/my\\040disk rw,subvol=/@home\n"
    "40 27 broken\n";

TEST(MountTable, AMountIsFoundByItsNumberAndItsNamesAreDecoded)
{
    EXPECT_EQ(findMount(table, 36),
              (MountEntry{
                  .device = makedev(259, 2), .mountPoint = "/mnt/my disk\\a", .type = "ext3", .source = "/dev/root"}));
    EXPECT_EQ(findMount(table, 361),
              (MountEntry{
                  .device = makedev(0, 42), .mountPoint = "/home", .type = "btrfs", .source = "/dev/mapper/my disk"}));
}

TEST(MountTable, AnUnknownNumberAndALineOfAnotherFormGiveNothing)
{
    EXPECT_EQ(findMount(table, 3), std::nullopt);
    EXPECT_EQ(findMount(table, 40), std::nullopt);
    EXPECT_EQ(findMount({}, 36), std::nullopt);
}

} // namespace
} // namespace quillhaven::test
