// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "credentials/KeychainError.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "support/InMemoryCredentialStore.h"
#include "support/LogCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QStringList>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A map that records every call and can answer particular calls with another status.
class NotedStore : public InMemoryCredentialStore
{
public:
    CredentialStatus add(const QString &service, const QString &account, const QByteArray &value) override
    {
        return noted("add", service, account, [&] { return InMemoryCredentialStore::add(service, account, value); });
    }
    CredentialStatus update(const QString &service, const QString &account, const QByteArray &value) override
    {
        return noted("update", service, account,
                     [&] { return InMemoryCredentialStore::update(service, account, value); });
    }
    CredentialStatus remove(const QString &service, const QString &account) override
    {
        return noted("remove", service, account, [&] { return InMemoryCredentialStore::remove(service, account); });
    }
    Match copyMatching(const QString &service, const QString &account) override
    {
        if (findsNoBytes) {
            return {credentialSuccess, std::nullopt};
        }
        return InMemoryCredentialStore::copyMatching(service, account);
    }

    QStringList calls;
    QMap<QString, CredentialStatus> answers; ///< by call, such as "update a"
    bool findsNoBytes = false;

private:
    template <typename Call>
    CredentialStatus noted(const char *name, const QString &service, const QString &account, Call call)
    {
        EXPECT_EQ(service, QStringLiteral("com.tarnwick.quillhaven"));
        calls.append(QLatin1String(name) + QLatin1Char(' ') + account);
        return answers.contains(calls.last()) ? answers.value(calls.last()) : call();
    }
};

class Keychain : public ::testing::Test
{
protected:
    /// The text and the status of the error that the call throws.
    template <typename Call>
    static std::pair<QString, CredentialStatus> errorOf(KeychainError::Case expected, Call call)
    {
        try {
            call();
        } catch (const KeychainError &error) {
            EXPECT_EQ(error.errorCase(), expected);
            return {error.errorDescription(), error.status()};
        }
        ADD_FAILURE() << "no error";
        return {};
    }

    const QString m_id = QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF");
    const QString m_markerAccount = m_id + QStringLiteral("_touchid");
    NotedStore m_store;
    OpenSslRandomSource m_random;
    KeychainManager m_keychain{m_store, m_random, keychainServiceName};
};

} // namespace

TEST(KeychainError, NamesTheFailureAndTheStatusInDecimal)
{
    const auto text = [](KeychainError::Case errorCase, CredentialStatus status) {
        return KeychainError(errorCase, status).errorDescription();
    };
    EXPECT_EQ(text(KeychainError::saveFailed, -25308), QStringLiteral("Failed to save to keychain: -25308"));
    EXPECT_EQ(text(KeychainError::retrieveFailed, -25300), QStringLiteral("Failed to retrieve from keychain: -25300"));
    EXPECT_EQ(text(KeychainError::deleteFailed, -25291), QStringLiteral("Failed to delete from keychain: -25291"));
    EXPECT_EQ(text(KeychainError::invalidData, 0), QStringLiteral("Invalid data in keychain"));
    static_assert(KeychainError::saveFailed < KeychainError::retrieveFailed &&
                  KeychainError::retrieveFailed < KeychainError::deleteFailed &&
                  KeychainError::deleteFailed < KeychainError::invalidData);
}

TEST_F(Keychain, EachSecretIsStoredUnderItsAccountAsPlainUtf8)
{
    m_keychain.storePassword(QStringLiteral("Pässwort 鍵"), m_id);
    m_keychain.storeMasterPassword(QStringLiteral("Mäster1x"));
    EXPECT_EQ(m_store.entries.value(m_id), QStringLiteral("Pässwort 鍵").toUtf8());
    EXPECT_EQ(m_store.entries.value(QStringLiteral("master_password")), QStringLiteral("Mäster1x").toUtf8());
    EXPECT_EQ(m_keychain.retrievePassword(m_id), QStringLiteral("Pässwort 鍵"));
    EXPECT_EQ(m_keychain.retrieveMasterPassword(), QStringLiteral("Mäster1x"));
}

TEST_F(Keychain, ANewEntryIsAddedWithoutAnUpdate)
{
    m_keychain.storePassword(QStringLiteral("first"), m_id);
    EXPECT_EQ(m_store.calls, QStringList{QStringLiteral("add ") + m_id});
}

TEST_F(Keychain, StoringAPasswordAgainReplacesItInPlace)
{
    m_keychain.storePassword(QStringLiteral("first"), m_id);
    m_store.calls.clear();
    m_keychain.storePassword(QStringLiteral("second"), m_id);
    EXPECT_EQ(m_store.calls, (QStringList{QStringLiteral("add ") + m_id, QStringLiteral("update ") + m_id}));
    EXPECT_EQ(m_store.entries.size(), 1);
    EXPECT_EQ(m_keychain.retrievePassword(m_id), QStringLiteral("second"));
}

TEST_F(Keychain, AFailedUpdateIsASaveErrorAndKeepsTheOldValue)
{
    m_keychain.storePassword(QStringLiteral("first"), m_id);
    m_store.answers[QStringLiteral("update ") + m_id] = credentialInteractionNotAllowed;
    const auto error =
        errorOf(KeychainError::saveFailed, [this] { m_keychain.storePassword(QStringLiteral("second"), m_id); });
    EXPECT_EQ(error.second, credentialInteractionNotAllowed);
    EXPECT_EQ(m_keychain.retrievePassword(m_id), QStringLiteral("first"));
}

TEST_F(Keychain, AFailedAddIsASaveErrorWithoutAnUpdate)
{
    m_store.failWith = credentialInteractionNotAllowed;
    const auto error =
        errorOf(KeychainError::saveFailed, [this] { m_keychain.storeMasterPassword(QStringLiteral("Abcdefg1")); });
    EXPECT_EQ(error.first, QStringLiteral("Failed to save to keychain: -25308"));
    EXPECT_EQ(m_store.calls, QStringList{QStringLiteral("add master_password")});
}

TEST_F(Keychain, ATouchIDKeyIsANewUpperCaseUuidUnderItsOwnAccount)
{
    m_keychain.storeTouchIDKey(m_id);
    EXPECT_EQ(m_store.entries.keys(), QStringList{m_markerAccount});
    const QString key = m_keychain.retrieveTouchIDKey(m_id);
    static const QRegularExpression uuid(
        QStringLiteral("^[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}$"));
    EXPECT_TRUE(uuid.match(key).hasMatch()) << key.toStdString();
}

TEST_F(Keychain, StoringTheTouchIDKeyTwiceLeavesOneEntryWithTheSecondUuid)
{
    m_keychain.storeTouchIDKey(m_id);
    const QString first = m_keychain.retrieveTouchIDKey(m_id);
    m_keychain.storeTouchIDKey(m_id);
    EXPECT_EQ(m_store.entries.size(), 1);
    EXPECT_NE(m_keychain.retrieveTouchIDKey(m_id), first);
}

TEST_F(Keychain, RetrievingAnUnknownIdFailsWithTheStatusInTheText)
{
    const auto error =
        errorOf(KeychainError::retrieveFailed, [this] { (void)m_keychain.retrievePassword(QStringLiteral("none")); });
    EXPECT_EQ(error.first, QStringLiteral("Failed to retrieve from keychain: -25300"));
    errorOf(KeychainError::retrieveFailed, [this] { (void)m_keychain.retrieveTouchIDKey(m_id); });
    errorOf(KeychainError::retrieveFailed, [this] { (void)m_keychain.retrieveMasterPassword(); });
}

TEST_F(Keychain, BytesThatAreNotUtf8AreInvalidDataAndNotARetrieveError)
{
    const QList<QByteArray> broken{QByteArray("\xff\xfe"), QByteArray("abc\xc3"), QByteArray("\xc0\xaf"),
                                   QByteArray("\xed\xa0\x80"), QByteArray("a\x80z")};
    for (const QByteArray &bytes : broken) {
        m_store.entries[m_id] = bytes;
        const auto error = errorOf(KeychainError::invalidData, [this] { (void)m_keychain.retrievePassword(m_id); });
        EXPECT_EQ(error.first, QStringLiteral("Invalid data in keychain")) << bytes.toHex().toStdString();
    }
}

TEST_F(Keychain, ASuccessWithoutBytesIsInvalidData)
{
    m_store.findsNoBytes = true;
    errorOf(KeychainError::invalidData, [this] { (void)m_keychain.retrieveMasterPassword(); });
}

TEST_F(Keychain, EveryTextIsReadAsItWasStored)
{
    const QStringList texts{QString(),
                            QStringLiteral("a\nb\tc "),
                            QStringLiteral("🔑👩‍👩‍👧"),
                            QString(QChar(0xfeff)) + QStringLiteral("marked"),
                            QStringLiteral("nul") + QChar(u'\0') + QStringLiteral("inside"),
                            QStringLiteral("e\u0301"),
                            QStringLiteral("é")};
    for (const QString &text : texts) {
        m_keychain.storePassword(text, m_id);
        EXPECT_EQ(m_keychain.retrievePassword(m_id), text) << text.toStdString();
    }
}

TEST_F(Keychain, RemovingTheMasterPasswordSucceedsWithAndWithoutOne)
{
    m_keychain.storeMasterPassword(QStringLiteral("Abcdefg1"));
    m_keychain.removeMasterPassword();
    EXPECT_TRUE(m_store.entries.isEmpty());
    EXPECT_NO_THROW(m_keychain.removeMasterPassword());
}

TEST_F(Keychain, AFailureToRemoveTheMasterPasswordIsADeleteError)
{
    m_store.failWith = credentialNotAvailable;
    const auto error = errorOf(KeychainError::deleteFailed, [this] { m_keychain.removeMasterPassword(); });
    EXPECT_EQ(error.first, QStringLiteral("Failed to delete from keychain: -25291"));
}

TEST_F(Keychain, RemovingTheCredentialsOfAnItemWithoutAnyLogsBothAsRemoved)
{
    LogCapture log;
    m_keychain.removeCredentials(m_id);
    EXPECT_EQ(log.lines(),
              (QStringList{
                  QStringLiteral("🔑 KeychainManager: Starting removeCredentials for itemId: ") + m_id,
                  QStringLiteral("🔑 KeychainManager: Removing password for account: ") + m_id,
                  QStringLiteral("✅ KeychainManager: Successfully removed password (or it didn't exist)"),
                  QStringLiteral("🔑 KeychainManager: Removing Touch ID key for account: ") + m_markerAccount,
                  QStringLiteral("✅ KeychainManager: Successfully removed Touch ID key (or it didn't exist)"),
                  QStringLiteral("✅ KeychainManager: removeCredentials completed successfully"),
              }));
}

TEST_F(Keychain, RemovingTheCredentialsOfAnItemWithOnlyATouchIDKeyDeletesIt)
{
    LogCapture log;
    m_keychain.storeTouchIDKey(m_id);
    m_keychain.removeCredentials(m_id);
    EXPECT_TRUE(m_store.entries.isEmpty());
}

TEST_F(Keychain, RemovingTheCredentialsAlwaysTriesBothEntriesPasswordFirst)
{
    LogCapture log;
    m_keychain.storePassword(QStringLiteral("first"), m_id);
    m_store.calls.clear();
    m_keychain.removeCredentials(m_id);
    EXPECT_EQ(m_store.calls,
              (QStringList{QStringLiteral("remove ") + m_id, QStringLiteral("remove ") + m_markerAccount}));
}

TEST_F(Keychain, APasswordThatCannotBeDeletedLeavesTheTouchIDKeyUntouched)
{
    LogCapture log;
    m_keychain.storeTouchIDKey(m_id);
    m_store.calls.clear();
    m_store.answers[QStringLiteral("remove ") + m_id] = credentialInteractionNotAllowed;
    const auto error = errorOf(KeychainError::deleteFailed, [this] { m_keychain.removeCredentials(m_id); });
    EXPECT_EQ(error.second, credentialInteractionNotAllowed);
    EXPECT_EQ(m_store.calls, QStringList{QStringLiteral("remove ") + m_id});
    EXPECT_TRUE(m_store.entries.contains(m_markerAccount));
    EXPECT_EQ(log.lines(), (QStringList{
                               QStringLiteral("🔑 KeychainManager: Starting removeCredentials for itemId: ") + m_id,
                               QStringLiteral("🔑 KeychainManager: Removing password for account: ") + m_id,
                               QStringLiteral("❌ KeychainManager: Failed to delete password, status: -25308"),
                           }));
}

TEST_F(Keychain, ATouchIDKeyThatCannotBeDeletedIsADeleteErrorAfterThePasswordIsRemoved)
{
    LogCapture log;
    m_keychain.storePassword(QStringLiteral("first"), m_id);
    m_store.answers[QStringLiteral("remove ") + m_markerAccount] = credentialNotAvailable;
    const auto error = errorOf(KeychainError::deleteFailed, [this] { m_keychain.removeCredentials(m_id); });
    EXPECT_EQ(error.second, credentialNotAvailable);
    EXPECT_TRUE(m_store.entries.isEmpty());
    EXPECT_EQ(log.lines().last(), QStringLiteral("❌ KeychainManager: Failed to delete Touch ID key, status: -25291"));
}

TEST_F(Keychain, AnIdThatEndsLikeATouchIDAccountIsNotTreatedSpecially)
{
    LogCapture log;
    const QString id = QStringLiteral("odd_touchid");
    m_keychain.storePassword(QStringLiteral("password"), id);
    m_keychain.storeTouchIDKey(id);
    EXPECT_EQ(m_store.entries.keys(), (QStringList{id, QStringLiteral("odd_touchid_touchid")}));
    m_keychain.removeCredentials(id);
    EXPECT_TRUE(m_store.entries.isEmpty());
}
