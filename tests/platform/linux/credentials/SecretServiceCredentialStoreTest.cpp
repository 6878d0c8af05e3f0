// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SecretServiceCredentialStore.h"
#include "contract/CredentialStoreContract.h"
#include "credentials/KeychainError.h"
#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/KeyringFixture.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QtConcurrentRun>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// The real keyring without entries of the program.
class EmptyKeyring
{
public:
    EmptyKeyring() { removeAllEntries(); }
    ~EmptyKeyring() { removeAllEntries(); }
    EmptyKeyring(const EmptyKeyring &) = delete;
    EmptyKeyring &operator=(const EmptyKeyring &) = delete;

    [[nodiscard]] CredentialStore &store() { return m_store; }

private:
    SecretServiceCredentialStore m_store;
};

class Keyring : public ::testing::Test
{
protected:
    CredentialStore &store() { return m_empty.store(); }
    /// Adds another entry of the account, even if there is one, as another program or a merged keyring may.
    void addEntry(const QByteArray &bytes)
    {
        const EntryAttributes attributes(m_account);
        SecretService *service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, nullptr, nullptr);
        ASSERT_NE(service, nullptr);
        SecretCollection *collection = secret_collection_for_alias_sync(service, SECRET_COLLECTION_DEFAULT,
                                                                        SECRET_COLLECTION_NONE, nullptr, nullptr);
        g_object_unref(service);
        ASSERT_NE(collection, nullptr);
        SecretValue *value = secret_value_new(bytes.constData(), bytes.size(), "text/plain");
        SecretItem *item = secret_item_create_sync(collection, nullptr, attributes.table(), "another", value,
                                                   SECRET_ITEM_CREATE_NONE, nullptr, nullptr);
        EXPECT_NE(item, nullptr);
        g_clear_object(&item);
        secret_value_unref(value);
        g_object_unref(collection);
    }

    const QString m_service = keychainServiceName;
    const QString m_account = QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF");
    OpenSslRandomSource m_random;
    EmptyKeyring m_empty;
    KeychainManager m_keychain{store(), m_random, keychainServiceName};
};

} // namespace

namespace quillhaven::test {
INSTANTIATE_TYPED_TEST_SUITE_P(RealKeyring, CredentialStoreContract, EmptyKeyring);
}

TEST_F(Keyring, AnotherProgramFindsTheEntryByServiceAndAccount)
{
    EXPECT_EQ(store().add(m_service, m_account, "secret"), credentialSuccess);
    EXPECT_EQ(entryPaths(m_account).size(), 1);
}

TEST_F(Keyring, AReplacedPasswordRemainsTheSameEntry)
{
    m_keychain.storePassword(QStringLiteral("first"), m_account);
    const QStringList before = entryPaths(m_account);
    m_keychain.storePassword(QStringLiteral("second"), m_account);
    EXPECT_EQ(before.size(), 1);
    EXPECT_EQ(entryPaths(m_account), before);
    EXPECT_EQ(m_keychain.retrievePassword(m_account), QStringLiteral("second"));
}

TEST_F(Keyring, AnEntryInAnotherCollectionIsReplacedThere)
{
    const EntryAttributes attributes(m_account);
    SecretValue *value = secret_value_new("first", 5, "text/plain");
    ASSERT_TRUE(secret_service_store_sync(nullptr, nullptr, attributes.table(), SECRET_COLLECTION_SESSION, "moved",
                                          value, nullptr, nullptr));
    secret_value_unref(value);
    const QStringList before = entryPaths(m_account);
    m_keychain.storePassword(QStringLiteral("second"), m_account);
    EXPECT_EQ(before.size(), 1);
    EXPECT_EQ(entryPaths(m_account), before);
    EXPECT_EQ(m_keychain.retrievePassword(m_account), QStringLiteral("second"));
}

TEST_F(Keyring, OfTwoEntriesOfOneAccountTheOneThatIsReadIsReplaced)
{
    addEntry("one");
    addEntry("two");
    const QStringList before = entryPaths(m_account);
    ASSERT_EQ(before.size(), 2);
    EXPECT_EQ(store().add(m_service, m_account, "three"), credentialDuplicateItem);
    m_keychain.storePassword(QStringLiteral("new"), m_account);
    EXPECT_EQ(m_keychain.retrievePassword(m_account), QStringLiteral("new"));
    EXPECT_EQ(entryPaths(m_account), before);
}

TEST_F(Keyring, EveryEntryOfTheAccountIsRemoved)
{
    addEntry("one");
    addEntry("two");
    ASSERT_EQ(entryPaths(m_account).size(), 2);
    EXPECT_EQ(store().remove(m_service, m_account), credentialSuccess);
    EXPECT_EQ(entryPaths(m_account), QStringList());
    EXPECT_EQ(store().copyMatching(m_service, m_account).status, credentialItemNotFound);
}

TEST_F(Keyring, EntriesOfAnotherServiceAreIgnored)
{
    const QString other = QStringLiteral("com.tarnwick.other");
    EXPECT_EQ(store().add(other, m_account, "theirs"), credentialSuccess);
    EXPECT_EQ(store().copyMatching(m_service, m_account).status, credentialItemNotFound);
    EXPECT_EQ(store().add(m_service, m_account, "ours"), credentialSuccess);
    EXPECT_EQ(store().remove(m_service, m_account), credentialSuccess);
    EXPECT_EQ(store().copyMatching(other, m_account).value, QByteArray("theirs"));
    EXPECT_EQ(store().remove(other, m_account), credentialSuccess);
}

TEST_F(Keyring, BytesThatAreNotUtf8AreInvalidData)
{
    ASSERT_EQ(store().add(m_service, m_account, QByteArray("\xff\xfe\x00", 3)), credentialSuccess);
    try {
        (void)m_keychain.retrievePassword(m_account);
        ADD_FAILURE() << "no error";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.errorCase(), KeychainError::invalidData);
    }
}

TEST_F(Keyring, CallsWorkFromAnotherThread)
{
    const QFuture<CredentialStatus> added =
        QtConcurrent::run([this] { return store().add(m_service, m_account, "secret"); });
    EXPECT_EQ(added.result(), credentialSuccess);
    const QFuture<CredentialStore::Match> found =
        QtConcurrent::run([this] { return store().copyMatching(m_service, m_account); });
    EXPECT_EQ(found.result().value, QByteArray("secret"));
}

TEST_F(Keyring, IsChosenIfItAnswersAndThatIsLoggedOnce)
{
    const TemporaryHome home;
    LogCapture log;
    OpenSslRandomSource random;
    SystemCredentialStore chosen(home.directories().configuration, random);
    EXPECT_EQ(chosen.place(), CredentialStore::Place::NotChosen);
    EXPECT_EQ(chosen.add(m_service, m_account, "secret"), credentialSuccess);
    EXPECT_EQ(chosen.copyMatching(m_service, m_account).value, QByteArray("secret"));
    EXPECT_EQ(chosen.place(), CredentialStore::Place::Keyring);
    EXPECT_EQ(log.lines(),
              QStringList{QStringLiteral("🔑 Credentials are kept in the desktop's keyring (Secret Service)")});
    EXPECT_EQ(entryPaths(m_account).size(), 1);
    EXPECT_FALSE(QFile::exists(home.directories().configuration + QStringLiteral("/credentials.db")))
        << "the embedded store was used";
}
