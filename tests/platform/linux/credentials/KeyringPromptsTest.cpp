// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "platform/linux/credentials/MockKeyring.h"
#include "platform/linux/credentials/SecretServiceCredentialStore.h"
#include "support/ManualClock.h"

#include <QtConcurrentRun>

#include <gio/gio.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A keyring that asks the user, whose answers the test gives.
class KeyringPrompts : public ::testing::Test
{
protected:
    CredentialStore::Match match(const QString &account) { return m_store.copyMatching(m_service, account); }
    CredentialStatus add() { return m_store.add(m_service, m_account, "new"); }
    void addLocked(const QString &account) { m_keyring.addEntry(m_service, account, true); }
    void dismissPrompts() { m_keyring.change(QStringLiteral("answer"), QStringLiteral("dismiss")); }
    void allowPrompts() { m_keyring.change(QStringLiteral("answer"), QStringLiteral("allow")); }
    void setCollection(const char *state) { m_keyring.change(QStringLiteral("collection"), QLatin1String(state)); }

    const QString m_service = keychainServiceName;
    const QString m_account = QStringLiteral("master_password");
    const QString m_other = QStringLiteral("other");
    MockKeyring m_keyring;
    SecretServiceCredentialStore m_store;
};

} // namespace

TEST_F(KeyringPrompts, ALockedEntryInAnOpenKeyringIsUnlockedAndRead)
{
    addLocked(m_account);
    EXPECT_EQ(match(m_account).value, QByteArray("secret"));
    EXPECT_EQ(m_keyring.prompts(), 1);
    EXPECT_EQ(match(m_account).value, QByteArray("secret"));
    EXPECT_EQ(m_keyring.prompts(), 1);
}

TEST_F(KeyringPrompts, ALockedEntryIsUnlockedToBeAddedUpdatedAndRemoved)
{
    addLocked(m_account);
    EXPECT_EQ(add(), credentialDuplicateItem);
    addLocked(m_other);
    EXPECT_EQ(m_store.update(m_service, m_other, "changed"), credentialSuccess);
    EXPECT_EQ(match(m_other).value, QByteArray("changed"));
    const QString third = QStringLiteral("third");
    addLocked(third);
    EXPECT_EQ(m_store.remove(m_service, third), credentialSuccess);
    EXPECT_EQ(m_keyring.entries(), 2);
    EXPECT_EQ(m_keyring.prompts(), 3);
}

TEST_F(KeyringPrompts, ADismissedPromptFailsTheCallAndIsNotRepeatedInIt)
{
    addLocked(m_account);
    dismissPrompts();
    EXPECT_EQ(m_store.update(m_service, m_account, "new"), credentialInteractionNotAllowed);
    EXPECT_EQ(m_keyring.prompts(), 1);
    EXPECT_EQ(m_store.remove(m_service, m_account), credentialInteractionNotAllowed);
    EXPECT_EQ(m_keyring.prompts(), 2);
    EXPECT_EQ(m_keyring.entries(), 1);
}

TEST_F(KeyringPrompts, ARunOverManyItemsIsDeclinedOnce)
{
    ManualClock clock;
    SecretServiceCredentialStore store(&clock);
    setCollection("locked");
    dismissPrompts();
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(store.prepareForWriting(), credentialInteractionNotAllowed);
        clock.advance(std::chrono::milliseconds(400));
    }
    EXPECT_EQ(m_keyring.prompts(), 1);
    clock.advance(std::chrono::milliseconds(100));
    allowPrompts();
    EXPECT_EQ(store.prepareForWriting(), credentialSuccess);
    EXPECT_EQ(m_keyring.prompts(), 2);
}

TEST_F(KeyringPrompts, ALookupDeclinedAtTheStartIsNotAskedForAgain)
{
    addLocked(m_account);
    addLocked(m_other);
    dismissPrompts();
    EXPECT_EQ(match(m_account).status, credentialInteractionNotAllowed);
    EXPECT_EQ(match(m_account).status, credentialInteractionNotAllowed);
    EXPECT_EQ(m_keyring.prompts(), 1);

    EXPECT_EQ(match(m_other).status, credentialInteractionNotAllowed);
    EXPECT_EQ(match(m_other).status, credentialInteractionNotAllowed);
    EXPECT_EQ(m_keyring.prompts(), 3);

    allowPrompts();
    EXPECT_EQ(match(m_account).status, credentialInteractionNotAllowed);
    m_store.forgetDeclined();
    EXPECT_EQ(match(m_account).value, QByteArray("secret"));
    EXPECT_EQ(m_keyring.prompts(), 4);
}

TEST_F(KeyringPrompts, ALockedKeyringIsUnlockedForANewEntry)
{
    setCollection("locked");
    EXPECT_EQ(add(), credentialSuccess);
    EXPECT_EQ(m_keyring.prompts(), 1);
    EXPECT_EQ(match(m_account).value, QByteArray("new"));
}

TEST_F(KeyringPrompts, AnEntryThatALockedKeyringHidesIsFound)
{
    m_keyring.addEntry(m_service, m_account, false);
    setCollection("locked");
    EXPECT_EQ(match(m_account).value, QByteArray("secret"));
    EXPECT_EQ(match(m_other).status, credentialItemNotFound);
    EXPECT_EQ(m_keyring.prompts(), 1);
}

TEST_F(KeyringPrompts, ALockedKeyringThatStaysLockedIsNotAnEmptyOne)
{
    setCollection("locked");
    dismissPrompts();
    EXPECT_EQ(match(m_account).status, credentialInteractionNotAllowed);
    EXPECT_EQ(add(), credentialInteractionNotAllowed);
    EXPECT_EQ(m_keyring.entries(), 0);
    EXPECT_EQ(m_keyring.prompts(), 2);
}

TEST_F(KeyringPrompts, PreparingUnlocksTheKeyringAndStoresNothing)
{
    EXPECT_EQ(m_store.prepareForWriting(), credentialSuccess);
    EXPECT_EQ(m_keyring.prompts(), 0);
    setCollection("locked");
    dismissPrompts();
    EXPECT_EQ(m_store.prepareForWriting(), credentialInteractionNotAllowed);
    allowPrompts();
    EXPECT_EQ(m_store.prepareForWriting(), credentialSuccess);
    EXPECT_EQ(m_keyring.prompts(), 2);
    EXPECT_EQ(m_keyring.entries(), 0);
    EXPECT_EQ(add(), credentialSuccess);
    EXPECT_EQ(m_keyring.prompts(), 2);
}

TEST_F(KeyringPrompts, PreparingCreatesAMissingDefaultCollection)
{
    setCollection("missing");
    dismissPrompts();
    EXPECT_EQ(add(), credentialNoDefaultCollection);
    EXPECT_EQ(m_keyring.prompts(), 0);
    EXPECT_EQ(m_store.prepareForWriting(), credentialNoDefaultCollection);
    EXPECT_EQ(m_keyring.prompts(), 1);
    allowPrompts();
    EXPECT_EQ(m_store.prepareForWriting(), credentialSuccess);
    EXPECT_EQ(add(), credentialSuccess);
}

TEST_F(KeyringPrompts, ADeclinedDeletionIsAFailure)
{
    m_keyring.addEntry(m_service, m_account, false);
    m_keyring.change(QStringLiteral("deletion"), QStringLiteral("asks"));
    dismissPrompts();
    EXPECT_EQ(m_store.remove(m_service, m_account), credentialInteractionNotAllowed);
    EXPECT_EQ(match(m_account).value, QByteArray("secret"));
    allowPrompts();
    EXPECT_EQ(m_store.remove(m_service, m_account), credentialSuccess);
    EXPECT_EQ(match(m_account).status, credentialItemNotFound);
}

TEST_F(KeyringPrompts, ADeclinedCreationIsAFailure)
{
    m_keyring.change(QStringLiteral("creation"), QStringLiteral("asks"));
    dismissPrompts();
    EXPECT_NE(add(), credentialSuccess);
    EXPECT_EQ(m_keyring.entries(), 0);
    allowPrompts();
    EXPECT_EQ(add(), credentialSuccess);
    EXPECT_EQ(match(m_account).value, QByteArray("new"));
}

TEST_F(KeyringPrompts, ACallThatWaitsForThePromptCanBeCancelled)
{
    addLocked(m_account);
    m_keyring.change(QStringLiteral("answer"), QStringLiteral("nothing"));
    const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), g_object_unref);
    m_store.cancelWith(cancellable);
    const QFuture<CredentialStore::Match> reading =
        QtConcurrent::run([this] { return m_store.copyMatching(m_service, m_account); });
    ASSERT_TRUE(spinUntil([this] { return m_keyring.prompts() == 1; }));
    EXPECT_FALSE(reading.isFinished());
    g_cancellable_cancel(cancellable.get());
    EXPECT_TRUE(spinUntil([&] { return reading.isFinished(); }));
    EXPECT_EQ(reading.result().status, credentialNotAvailable);
    // Dismissing it would end the keyring of the session, if that is gnome-keyring 42.
    EXPECT_EQ(m_keyring.dismissals(), 0);
}

TEST_F(KeyringPrompts, AKeyringThatEndsWhileItPromptsIsNotWaitedFor)
{
    addLocked(m_account);
    m_keyring.change(QStringLiteral("answer"), QStringLiteral("end"));
    EXPECT_EQ(match(m_account).status, credentialNotAvailable);
}

TEST_F(KeyringPrompts, ACallToASilentKeyringCanBeCancelled)
{
    m_keyring.change(QStringLiteral("silent"), QStringLiteral("yes"));
    const std::shared_ptr<GCancellable> cancellable(g_cancellable_new(), g_object_unref);
    m_store.cancelWith(cancellable);
    const QFuture<CredentialStatus> preparing = QtConcurrent::run([this] { return m_store.prepareForWriting(); });
    ASSERT_TRUE(spinUntil([this] { return m_keyring.unanswered() > 0; }));
    EXPECT_FALSE(preparing.isFinished());
    g_cancellable_cancel(cancellable.get());
    // Before the call's own limit.
    EXPECT_TRUE(spinUntil([&] { return preparing.isFinished(); }, 8000));
    EXPECT_EQ(preparing.result(), credentialNotAvailable);
}
