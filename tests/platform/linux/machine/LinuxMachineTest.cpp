// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/machine/LinuxMachine.h"
#include "platform/linux/machine/OsRelease.h"
#include "support/PrintText.h"
#include "support/TemporaryHome.h"

#include <QSysInfo>

#include <gtest/gtest.h>

namespace quillhaven::test {

namespace {

const QString osRelease = QStringLiteral("etc/os-release");
const QString vendorOsRelease = QStringLiteral("usr/lib/os-release");
const QString productName = QStringLiteral("sys/class/dmi/id/product_name");
const QString deviceTreeModel = QStringLiteral("proc/device-tree/model");

class LinuxMachineTest : public ::testing::Test
{
protected:
    TemporaryHome root;
    LinuxMachine machine{root.path()};
};

TEST_F(LinuxMachineTest, TheSystemIsNamedByItsReleaseFile)
{
    root.write(osRelease, "NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\nID=debian\n");
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Debian GNU/Linux 12 (bookworm)"));
}

TEST_F(LinuxMachineTest, TheVendorsReleaseFileCountsWhereTheAdministratorHasNone)
{
    root.write(vendorOsRelease, "PRETTY_NAME=\"Vendor 1\"\n");
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Vendor 1"));
    root.write(osRelease, "PRETTY_NAME=\"Own 2\"\n");
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Own 2"));
}

TEST_F(LinuxMachineTest, ASystemWithoutANameIsLinux)
{
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Linux"));
    root.write(osRelease, "ID=unnamed\n");
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Linux"));
    root.write(osRelease, "PRETTY_NAME=\"\"\n");
    EXPECT_EQ(machine.operatingSystemVersionString(), QStringLiteral("Linux"));
}

TEST_F(LinuxMachineTest, TheModelIsTheProductNameOfTheFirmware)
{
    root.write(productName, "  ThinkPad X1 Carbon Gen 9 \n");
    root.write(deviceTreeModel, QByteArrayLiteral("Another board\0"));
    EXPECT_EQ(machine.hardwareModel(), QStringLiteral("ThinkPad X1 Carbon Gen 9"));
}

TEST_F(LinuxMachineTest, WordsInPlaceOfANameAreKept)
{
    root.write(productName, "To Be Filled By O.E.M.\n");
    EXPECT_EQ(machine.hardwareModel(), QStringLiteral("To Be Filled By O.E.M."));
}

TEST_F(LinuxMachineTest, WithoutFirmwareTheModelIsThatOfTheDeviceTreeUpToItsNullByte)
{
    root.write(deviceTreeModel, QByteArray("Raspberry Pi 4 Model B Rev 1.4\0rest", 35));
    EXPECT_EQ(machine.hardwareModel(), QStringLiteral("Raspberry Pi 4 Model B Rev 1.4"));
}

TEST_F(LinuxMachineTest, ABlankProductNameCountsAsNone)
{
    root.write(productName, " \n");
    root.write(deviceTreeModel, "A board");
    EXPECT_EQ(machine.hardwareModel(), QStringLiteral("A board"));
}

TEST_F(LinuxMachineTest, AMachineThatNamesNoModelHasAnEmptyOne)
{
    EXPECT_EQ(machine.hardwareModel(), QString());
}

TEST(LinuxMachine, ThisMachinesSystemIsTheOneThatQtNames)
{
    EXPECT_EQ(LinuxMachine().operatingSystemVersionString(), QSysInfo::prettyProductName());
}

TEST(OsRelease, AValueLosesItsQuotesAndBackslashes)
{
    const QByteArray file =
        "# PRETTY_NAME=comment\nA=plain\nB='it $is'\nC=\"a \\\"b\\\" \\$c \\\\\"\n D=x\nE=\nAB=no\n";
    EXPECT_EQ(osReleaseValue(file, "A"), QStringLiteral("plain"));
    EXPECT_EQ(osReleaseValue(file, "B"), QStringLiteral("it $is"));
    EXPECT_EQ(osReleaseValue(file, "C"), QStringLiteral("a \"b\" $c \\"));
    EXPECT_EQ(osReleaseValue(file, "D"), QStringLiteral("x"));
    EXPECT_EQ(osReleaseValue(file, "E"), QString());
    EXPECT_EQ(osReleaseValue(file, "PRETTY_NAME"), std::nullopt);
}

TEST(OsRelease, TheLastAssignmentCountsAndOpenQuotesAreNoValue)
{
    EXPECT_EQ(osReleaseValue("A=1\nA=2\n", "A"), QStringLiteral("2"));
    EXPECT_EQ(osReleaseValue("A=\"open\n", "A"), std::nullopt);
    EXPECT_EQ(osReleaseValue("A=Gr\xC3\xBC\xC3\x9F", "A"), QStringLiteral(u"Grüß"));
}

} // namespace

} // namespace quillhaven::test
