// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/volumes/SyncedFolders.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

class SyncedFolders : public ::testing::Test
{
protected:
    [[nodiscard]] bool isSynced(const QString &relative) const
    {
        return quillhaven::isSynced(QDir(home.path()).canonicalPath() + QLatin1Char('/') + relative,
                                    home.path(QStringLiteral("known")));
    }

    TemporaryHome home;
    const QString file = home.write(QStringLiteral("Cloud/papers/a.txt"));
};

TEST_F(SyncedFolders, AFolderWithoutAMarkIsNot)
{
    home.write(QStringLiteral("Cloud/papers/sync.db"));
    home.write(QStringLiteral("Other/.stfolder/marker"));
    EXPECT_FALSE(isSynced(QStringLiteral("Cloud/papers/a.txt")));
}

TEST_F(SyncedFolders, TheMarkOfEachToolCountsForAllBelowItsFolder)
{
    for (const char *mark : {".stfolder/marker", ".dropbox", ".dropbox.cache/new", ".sync/ID", ".sync_0a1b.db",
                             "._sync_0a1b.db", ".owncloudsync.log", ".nextcloudsync.log"}) {
        const QString path = home.write(QStringLiteral("Cloud/") + QLatin1String(mark));
        EXPECT_TRUE(isSynced(QStringLiteral("Cloud/papers/a.txt"))) << mark;
        EXPECT_TRUE(isSynced(QStringLiteral("Cloud"))) << mark;
        EXPECT_FALSE(isSynced(QStringLiteral("Desktop"))) << mark;
        QFile::remove(path);
        QDir().rmdir(QFileInfo(path).path());
    }
}

TEST_F(SyncedFolders, TheSettingsOfDropboxAreNoMark)
{
    home.write(QStringLiteral(".dropbox/info.json"));
    EXPECT_FALSE(isSynced(QStringLiteral("Cloud/papers/a.txt")));
}

TEST_F(SyncedFolders, AKnownFolderAndTheTargetOfAKnownLinkCount)
{
    home.write(QStringLiteral("known/own/backup"));
    ASSERT_TRUE(QFile::link(home.path(QStringLiteral("Cloud/papers")), home.path(QStringLiteral("known/link"))));
    EXPECT_TRUE(isSynced(QStringLiteral("known/own/backup")));
    EXPECT_TRUE(isSynced(QStringLiteral("Cloud/papers/a.txt")));
    EXPECT_FALSE(isSynced(QStringLiteral("Cloud/papers2/a.txt")));
    EXPECT_FALSE(isSynced(QStringLiteral("Cloud")));
}

} // namespace
} // namespace quillhaven::test
