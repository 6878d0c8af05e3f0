// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dashboard/CredentialStoreNotice.h"

#include "presentation/dashboard/NoticesModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "support/FakeCredentialStoreState.h"

#include <gtest/gtest.h>

namespace quillhaven::test {

namespace {

using Phase = CredentialStoreState::Phase;

class StoreNotice : public ::testing::Test
{
protected:
    QVariant shown(NoticesModel::Role role) const { return notices.data(notices.index(0), role); }
    QString text() const { return shown(NoticesModel::TextRole).toString(); }

    FakeCredentialStoreState state;
    NoticesModel notices;
    ConfirmationDialogManager confirmation;
    CredentialStoreNotice notice{state, notices, confirmation};
};

TEST_F(StoreNotice, IsShownWhileTheStoreIsWaitedForAndRemovedWhenItAnswers)
{
    EXPECT_EQ(notices.count(), 0);
    state.setPhase(Phase::Waiting);
    EXPECT_EQ(notices.count(), 1);
    EXPECT_TRUE(text().startsWith(QStringLiteral("Waiting for the keyring.")));
    EXPECT_TRUE(shown(NoticesModel::IsWaitingRole).toBool());
    EXPECT_EQ(shown(NoticesModel::ActionTitleRole).toString(), QString());
    state.setPhase(Phase::Usable);
    EXPECT_EQ(notices.count(), 0);
}

TEST_F(StoreNotice, SaysWhereTheSecretsAreAndTriesAgain)
{
    state.setPhase(Phase::Missing, QStringLiteral("The passwords are elsewhere."));
    EXPECT_TRUE(text().startsWith(QStringLiteral("The passwords are elsewhere. ")));
    EXPECT_EQ(shown(NoticesModel::ActionTitleRole).toString(), QStringLiteral("Try Again"));
    notices.act(0);
    EXPECT_EQ(state.tries, 1);
    state.setPhase(Phase::Waiting);
    EXPECT_EQ(notices.count(), 1);
    EXPECT_TRUE(shown(NoticesModel::IsWaitingRole).toBool());
}

TEST_F(StoreNotice, AnotherStoreIsUsedOnlyAfterAConfirmation)
{
    state.setPhase(Phase::Missing, QStringLiteral("The passwords are elsewhere."));
    notices.actOtherwise(0);
    EXPECT_TRUE(confirmation.isPresented());
    EXPECT_TRUE(confirmation.isDestructive());
    confirmation.cancel();
    EXPECT_EQ(state.replacements, 0);
    notices.actOtherwise(0);
    confirmation.confirm();
    EXPECT_EQ(state.replacements, 1);
}

} // namespace

} // namespace quillhaven::test
