// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/KeyringFixture.h"
#include "platform/linux/credentials/SecretServiceCredentialStore.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString rightPassword = QStringLiteral("test-password");

/// The session's keyring, which is restarted without entries for each test.
class KeyringState : public ::testing::Test
{
protected:
    void SetUp() override
    {
        restartKeyring(rightPassword);
        removeAllEntries();
    }
    void TearDown() override { endKeyring(); }

    /// Started with another password than it was created with, the keyring is available but locked.
    void restartKeyring(const QString &password)
    {
        endKeyring();
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        m_daemon.setStandardErrorFile(QProcess::nullDevice());
        m_daemon.start(
            QStringLiteral("gnome-keyring-daemon"),
            {QStringLiteral("--foreground"), QStringLiteral("--unlock"), QStringLiteral("--components=secrets")});
        m_daemon.write(password.toUtf8());
        m_daemon.closeWriteChannel();
        ASSERT_TRUE(spinUntil([] { return sessionBusNames().isServiceRegistered(secretsBusName); }));
    }

    void endKeyring()
    {
        if (sessionBusNames().isServiceRegistered(secretsBusName)) {
            kill(static_cast<pid_t>(sessionBusNames().servicePid(secretsBusName)), SIGTERM);
        }
        ASSERT_TRUE(spinUntil([] { return !sessionBusNames().isServiceRegistered(secretsBusName); }));
        m_daemon.waitForFinished();
    }

    void lockDefaultCollection()
    {
        SecretService *service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, nullptr);
        SecretCollection *collection = secret_collection_for_alias_sync(service, SECRET_COLLECTION_DEFAULT,
                                                                        SECRET_COLLECTION_NONE, nullptr, nullptr);
        GList objects{collection, nullptr, nullptr};
        EXPECT_EQ(secret_service_lock_sync(service, &objects, nullptr, nullptr, nullptr), 1);
        g_object_unref(collection);
        g_object_unref(service);
    }

    void expectLockedForAllCalls(const QString &account)
    {
        EXPECT_EQ(m_store.copyMatching(m_service, account).status, credentialInteractionNotAllowed);
        EXPECT_EQ(m_store.add(m_service, account, "new"), credentialInteractionNotAllowed);
        EXPECT_EQ(m_store.update(m_service, account, "new"), credentialInteractionNotAllowed);
        EXPECT_EQ(m_store.remove(m_service, account), credentialInteractionNotAllowed);
    }

    const QString m_service = keychainServiceName;
    const QString m_account = QStringLiteral("master_password");
    const QString m_absent = QStringLiteral("never stored");
    SecretServiceCredentialStore m_store;
    QProcess m_daemon;
};

} // namespace

TEST_F(KeyringState, AKeyringLockedWhileRunningRejectsAllCallsForExistingAndMissingEntries)
{
    ASSERT_EQ(m_store.add(m_service, m_account, "secret"), credentialSuccess);
    lockDefaultCollection();
    expectLockedForAllCalls(m_account);
    expectLockedForAllCalls(m_absent);

    restartKeyring(rightPassword);
    EXPECT_EQ(m_store.copyMatching(m_service, m_account).value, QByteArray("secret"));
    EXPECT_EQ(m_store.copyMatching(m_service, m_absent).status, credentialItemNotFound);
}

TEST_F(KeyringState, AKeyringLockedSinceItsStartRejectsAllCallsForExistingAndMissingEntries)
{
    ASSERT_EQ(m_store.add(m_service, m_account, "secret"), credentialSuccess);
    restartKeyring(QStringLiteral("another password"));
    expectLockedForAllCalls(m_account);
    expectLockedForAllCalls(m_absent);

    restartKeyring(rightPassword);
    EXPECT_EQ(m_store.copyMatching(m_service, m_account).value, QByteArray("secret"));
}

TEST_F(KeyringState, ALockedKeyringIsStillChosenAsTheStore)
{
    restartKeyring(QStringLiteral("another password"));
    const TemporaryHome home;
    LogCapture log;
    OpenSslRandomSource random;
    SystemCredentialStore chosen(home.directories().configuration, random);
    EXPECT_EQ(chosen.copyMatching(m_service, m_account).status, credentialInteractionNotAllowed);
    EXPECT_EQ(chosen.place(), CredentialStore::Place::Keyring);
}

TEST_F(KeyringState, AKeyringRestartedWhileTheProgramIsRunningCanBeRead)
{
    ASSERT_EQ(m_store.add(m_service, m_account, "secret"), credentialSuccess);
    restartKeyring(rightPassword);
    EXPECT_EQ(m_store.copyMatching(m_service, m_account).value, QByteArray("secret"));
    EXPECT_EQ(m_store.update(m_service, m_account, "changed"), credentialSuccess);
    EXPECT_EQ(m_store.copyMatching(m_service, m_account).value, QByteArray("changed"));
}
