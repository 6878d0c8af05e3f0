// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/preferences/WatchedSourcesModel.h"
#include "support/PrintText.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace quillhaven;

namespace {

class WatchedSourcesRows : public ::testing::Test
{
protected:
    [[nodiscard]] QString sentence(int row) const
    {
        return model.data(model.index(row), WatchedSourcesModel::SentenceRole).toString();
    }
    [[nodiscard]] bool isAvailable(int row) const
    {
        return model.data(model.index(row), WatchedSourcesModel::IsAvailableRole).toBool();
    }

    WatchedSources watched;
    int locks = 0;
    WatchedSourcesModel model{watched, [this] { ++locks; }, {}};
};

} // namespace

TEST_F(WatchedSourcesRows, ASourceThatNobodyHasLookedForSaysSo)
{
    EXPECT_EQ(model.rowCount(), 8);
    EXPECT_EQ(sentence(0), QStringLiteral("Not looked for yet."));
    EXPECT_FALSE(isAvailable(0));
}

TEST_F(WatchedSourcesRows, ARowFollowsItsSource)
{
    const QSignalSpy changes(&model, &WatchedSourcesModel::dataChanged);
    watched.setState(WatchedSources::Source::Sleep, {.isAvailable = true, .sentence = QStringLiteral("Watched.")});
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.first().first().toModelIndex().row(), 1);
    EXPECT_EQ(sentence(1), QStringLiteral("Watched."));
    EXPECT_TRUE(isAvailable(1));
    watched.setState(WatchedSources::Source::Sleep, {.isAvailable = true, .sentence = QStringLiteral("Watched.")});
    EXPECT_EQ(changes.size(), 1);
}

TEST_F(WatchedSourcesRows, TheButtonLocksEverything)
{
    model.lockEverything();
    EXPECT_EQ(locks, 1);
}
