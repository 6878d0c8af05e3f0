// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/BlockDevices.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/sysmacros.h>

namespace quillhaven::test {
namespace {

using Facts = BlockDevices::Facts;

/// A sysfs with devices that this machine does not have.
class BlockDevicesTest : public ::testing::Test
{
protected:
    /// A disk with this number.
    QString disk(const QString &name, int number, bool isSolidState)
    {
        const QString folder = device(QStringLiteral("devices/pci/") + name, number);
        sysfs.write(folder + QStringLiteral("/queue/rotational"), isSolidState ? "0\n" : "1\n");
        return folder;
    }
    QString partition(const QString &parent, const QString &name, int number)
    {
        const QString folder = device(parent + QLatin1Char('/') + name, number);
        sysfs.write(folder + QStringLiteral("/partition"), "1\n");
        return folder;
    }
    /// A volume that the device mapper or md builds on the others. Its own queue reports what the first of them does.
    QString volume(const QString &name, int number, const QStringList &parts, const QByteArray &mapping = {})
    {
        const QString folder = device(QStringLiteral("devices/virtual/block/") + name, number);
        sysfs.write(folder + QStringLiteral("/queue/rotational"), "1\n");
        if (!mapping.isEmpty()) {
            sysfs.write(folder + QStringLiteral("/dm/uuid"), mapping + '\n');
        }
        for (const QString &part : parts) {
            link(part, folder + QStringLiteral("/slaves/") + QFileInfo(part).fileName());
        }
        return folder;
    }
    void btrfs(const QString &uuid, const QStringList &parts)
    {
        for (const QString &part : parts) {
            link(part, QStringLiteral("fs/btrfs/%1/devices/%2").arg(uuid, QFileInfo(part).fileName()));
        }
    }
    [[nodiscard]] Facts facts(int number) const { return devices().factsAbout(makedev(8, number)); }
    [[nodiscard]] BlockDevices devices() const { return BlockDevices(sysfs.path()); }

    TemporaryHome sysfs;

private:
    QString device(const QString &folder, int number)
    {
        const QString numbers = QStringLiteral("8:%1").arg(number);
        sysfs.write(folder + QStringLiteral("/dev"), numbers.toLatin1() + '\n');
        link(folder, QStringLiteral("dev/block/") + numbers);
        return folder;
    }
    void link(const QString &target, const QString &name)
    {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(sysfs.path(name)).path()));
        ASSERT_TRUE(QFile::link(sysfs.path(target), sysfs.path(name)));
    }
};

TEST_F(BlockDevicesTest, ADiskIsWhatItsQueueReports)
{
    disk(QStringLiteral("sda"), 0, false);
    disk(QStringLiteral("nvme0n1"), 1, true);
    EXPECT_EQ(facts(0), Facts());
    EXPECT_EQ(facts(1), Facts{.isSolidState = true});
    EXPECT_EQ(facts(2), Facts()) << "no such device";
}

TEST_F(BlockDevicesTest, APartitionIsOnTheDiskThatItIsAPartOf)
{
    partition(disk(QStringLiteral("nvme0n1"), 0, true), QStringLiteral("nvme0n1p1"), 1);
    EXPECT_EQ(facts(1), Facts{.isSolidState = true});
}

TEST_F(BlockDevicesTest, AVolumeIsOnAllDisksBelowIt)
{
    const QString slow = partition(disk(QStringLiteral("sda"), 0, false), QStringLiteral("sda1"), 1);
    const QString fast = disk(QStringLiteral("sdb"), 2, true);
    const QString array = volume(QStringLiteral("md0"), 3, {slow, fast});
    volume(QStringLiteral("dm-0"), 4, {array}, "LVM-groupvolume");
    volume(QStringLiteral("dm-1"), 5, {slow}, "LVM-groupother");
    EXPECT_EQ(facts(4), Facts{.isSolidState = true});
    EXPECT_EQ(facts(5), Facts());
}

TEST_F(BlockDevicesTest, AVolumeOnAnEncryptedOneIsEncrypted)
{
    const QString ssd = partition(disk(QStringLiteral("sda"), 0, true), QStringLiteral("sda3"), 1);
    const QString luks = volume(QStringLiteral("dm-0"), 2, {ssd}, "CRYPT-LUKS2-0123-root_crypt");
    volume(QStringLiteral("dm-1"), 3, {luks}, "LVM-groupvolume");
    EXPECT_EQ(facts(2), (Facts{.isSolidState = true, .isEncrypted = true}));
    EXPECT_EQ(facts(3), (Facts{.isSolidState = true, .isEncrypted = true}));
}

TEST_F(BlockDevicesTest, AVolumeThatIsEncryptedInPartIsNot)
{
    const QString plain = disk(QStringLiteral("sda"), 0, false);
    const QString luks =
        volume(QStringLiteral("dm-0"), 1, {disk(QStringLiteral("sdb"), 2, false)}, "CRYPT-LUKS2-0123-x");
    volume(QStringLiteral("dm-1"), 3, {luks, plain}, "LVM-groupvolume");
    EXPECT_EQ(facts(3), Facts());
}

TEST_F(BlockDevicesTest, AnLvmVolumeHasSnapshotsWhenItAndTheyAreBuiltOnItsData)
{
    const QString data =
        volume(QStringLiteral("dm-1"), 1, {disk(QStringLiteral("sda"), 0, false)}, "LVM-groupvolume-real");
    const QString changes =
        volume(QStringLiteral("dm-2"), 2, {disk(QStringLiteral("sdb"), 5, false)}, "LVM-groupsnap-cow");
    volume(QStringLiteral("dm-0"), 3, {data}, "LVM-groupvolume");
    volume(QStringLiteral("dm-3"), 4, {data, changes}, "LVM-groupsnap");
    EXPECT_EQ(facts(3), Facts{.hasSnapshots = true});
    EXPECT_EQ(facts(4), Facts{.hasSnapshots = true});
}

TEST_F(BlockDevicesTest, ABtrfsFileSystemHasTheDevicesThatItLists)
{
    const QString first = partition(disk(QStringLiteral("sda"), 0, false), QStringLiteral("sda1"), 1);
    const QString second = disk(QStringLiteral("sdb"), 2, true);
    btrfs(QStringLiteral("1111"), {disk(QStringLiteral("sdc"), 3, false)});
    btrfs(QStringLiteral("2222"), {first, second});
    EXPECT_EQ(devices().devicesOfBtrfs(makedev(8, 1)), (std::vector<dev_t>{makedev(8, 1), makedev(8, 2)}));
    EXPECT_EQ(devices().devicesOfBtrfs(makedev(8, 9)), (std::vector<dev_t>{makedev(8, 9)}));
}

} // namespace
} // namespace quillhaven::test
