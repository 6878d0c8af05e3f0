// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/files/CloudFolders.h"

#include "platform/FileError.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString identifier = QStringLiteral("iCloud.com.example.program");

class CloudFoldersTest : public ::testing::Test
{
protected:
    QString folder(const QString &name)
    {
        QDir().mkpath(home.path(name));
        return home.path(name);
    }

    TemporaryHome home;
    CloudFolders cloud{home.directories()};
    QString place = home.directories().applicationSupport + QStringLiteral("/cloud/iCloud~com~example~program");
};

} // namespace

TEST_F(CloudFoldersTest, WithoutAFolderThereIsNone)
{
    EXPECT_EQ(cloud.containerDirectory(identifier), std::nullopt);
}

TEST_F(CloudFoldersTest, AChosenFolderIsUsedThroughALink)
{
    cloud.setContainerDirectory(identifier, folder(QStringLiteral("synced")));
    EXPECT_EQ(cloud.containerDirectory(identifier), place);
    EXPECT_EQ(QFileInfo(place).symLinkTarget(), home.path(QStringLiteral("synced")));
}

TEST_F(CloudFoldersTest, AnotherFolderReplacesTheLinkAndTheFormerKeepsItsFiles)
{
    cloud.setContainerDirectory(identifier, folder(QStringLiteral("first")));
    home.write(QStringLiteral("first/kept"), "kept");
    cloud.setContainerDirectory(identifier, folder(QStringLiteral("second")));
    EXPECT_EQ(QFileInfo(place).symLinkTarget(), home.path(QStringLiteral("second")));
    EXPECT_EQ(TemporaryHome::read(home.path(QStringLiteral("first/kept"))), "kept");
    EXPECT_EQ(QDir(QFileInfo(place).path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(),
              1);
}

TEST_F(CloudFoldersTest, ALinkToAFolderThatIsGoneIsReplaced)
{
    cloud.setContainerDirectory(identifier, folder(QStringLiteral("first")));
    QDir(home.path(QStringLiteral("first"))).removeRecursively();
    EXPECT_EQ(cloud.containerDirectory(identifier), std::nullopt);
    cloud.setContainerDirectory(identifier, folder(QStringLiteral("second")));
    EXPECT_EQ(QFileInfo(place).symLinkTarget(), home.path(QStringLiteral("second")));
}

TEST_F(CloudFoldersTest, AFolderInTheLinksPlaceIsNotReplaced)
{
    QDir().mkpath(place);
    EXPECT_THROW(cloud.setContainerDirectory(identifier, folder(QStringLiteral("synced"))), FileError);
    EXPECT_TRUE(QFileInfo(place).isDir());
    EXPECT_FALSE(QFileInfo(place).isSymLink());
}

TEST_F(CloudFoldersTest, TheFolderItselfMayBeChosenAgain)
{
    QDir().mkpath(place);
    cloud.setContainerDirectory(identifier, place);
    EXPECT_FALSE(QFileInfo(place).isSymLink());
    cloud.setContainerDirectory(QStringLiteral("other"), folder(QStringLiteral("synced")));
    cloud.setContainerDirectory(QStringLiteral("other"), home.path(QStringLiteral("synced")));
    EXPECT_EQ(cloud.containerDirectory(QStringLiteral("other")).has_value(), true);
}
