// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/CredentialStore.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace quillhaven::test {

/// The tests that every credential store must pass. Instantiate it with a type that has a `CredentialStore &store()`
/// and that, when constructed, contains none of the accounts used here; each test constructs one.
template <typename Fixture>
class CredentialStoreContract : public ::testing::Test
{
protected:
    [[nodiscard]] CredentialStore &store() { return m_fixture.store(); }

    [[nodiscard]] CredentialStatus add(const QByteArray &value) { return store().add(m_service, m_account, value); }
    [[nodiscard]] CredentialStatus update(const QByteArray &value)
    {
        return store().update(m_service, m_account, value);
    }
    [[nodiscard]] CredentialStore::Match match() { return store().copyMatching(m_service, m_account); }
    [[nodiscard]] CredentialStatus remove() { return store().remove(m_service, m_account); }

    const QString m_service = QStringLiteral("com.tarnwick.quillhaven");
    const QString m_account = QStringLiteral("6F9619FF-8B86-D011-B42D-00CF4FC964FF");

private:
    Fixture m_fixture;
};

TYPED_TEST_SUITE_P(CredentialStoreContract);

TYPED_TEST_P(CredentialStoreContract, AnAddedEntryIsFound)
{
    EXPECT_EQ(this->add("secret"), credentialSuccess);
    const auto match = this->match();
    EXPECT_EQ(match.status, credentialSuccess);
    EXPECT_EQ(match.value, QByteArray("secret"));
}

TYPED_TEST_P(CredentialStoreContract, ASecondAddOfAnAccountIsADuplicateAndKeepsTheFirstValue)
{
    EXPECT_EQ(this->add("first"), credentialSuccess);
    EXPECT_EQ(this->add("second"), credentialDuplicateItem);
    EXPECT_EQ(this->match().value, QByteArray("first"));
}

TYPED_TEST_P(CredentialStoreContract, AnUpdateReplacesTheValueAndThereIsStillOneEntry)
{
    EXPECT_EQ(this->add("first"), credentialSuccess);
    EXPECT_EQ(this->update("second"), credentialSuccess);
    EXPECT_EQ(this->match().value, QByteArray("second"));
    EXPECT_EQ(this->remove(), credentialSuccess);
    EXPECT_EQ(this->match().status, credentialItemNotFound);
}

TYPED_TEST_P(CredentialStoreContract, AMissingEntryIsNotFoundByLookupUpdateAndRemove)
{
    const auto match = this->match();
    EXPECT_EQ(match.status, credentialItemNotFound);
    EXPECT_FALSE(match.value.has_value());
    EXPECT_EQ(this->update("value"), credentialItemNotFound);
    EXPECT_EQ(this->remove(), credentialItemNotFound);
    EXPECT_EQ(this->match().status, credentialItemNotFound) << "the update created an entry";
}

TYPED_TEST_P(CredentialStoreContract, ARemovedEntryCanBeAddedAgain)
{
    EXPECT_EQ(this->add("first"), credentialSuccess);
    EXPECT_EQ(this->remove(), credentialSuccess);
    EXPECT_EQ(this->remove(), credentialItemNotFound);
    EXPECT_EQ(this->add("second"), credentialSuccess);
    EXPECT_EQ(this->match().value, QByteArray("second"));
}

TYPED_TEST_P(CredentialStoreContract, BytesThatAreNotTextAreStoredUnchanged)
{
    const QByteArray bytes("\xff\x00\xc3\x28 \n\x00", 7);
    EXPECT_EQ(this->add(bytes), credentialSuccess);
    EXPECT_EQ(this->match().value, bytes);
    const QByteArray others("\x00\xfe", 2);
    EXPECT_EQ(this->update(others), credentialSuccess);
    EXPECT_EQ(this->match().value, others);
}

TYPED_TEST_P(CredentialStoreContract, AnEmptyValueIsAValue)
{
    EXPECT_EQ(this->add(""), credentialSuccess);
    const auto match = this->match();
    EXPECT_EQ(match.status, credentialSuccess);
    ASSERT_TRUE(match.value.has_value());
    EXPECT_TRUE(match.value->isEmpty());
    EXPECT_EQ(this->add("another"), credentialDuplicateItem);
}

TYPED_TEST_P(CredentialStoreContract, EachAccountHasItsOwnEntry)
{
    const QString markerAccount = this->m_account + QStringLiteral("_touchid");
    EXPECT_EQ(this->add("password"), credentialSuccess);
    EXPECT_EQ(this->store().copyMatching(this->m_service, markerAccount).status, credentialItemNotFound);
    EXPECT_EQ(this->store().add(this->m_service, markerAccount, "marker"), credentialSuccess);
    EXPECT_EQ(this->remove(), credentialSuccess);
    EXPECT_EQ(this->store().copyMatching(this->m_service, markerAccount).value, QByteArray("marker"));
    EXPECT_EQ(this->store().remove(this->m_service, markerAccount), credentialSuccess);
}

TYPED_TEST_P(CredentialStoreContract, AccountsInAnyScriptAndOfAnyLengthAreKeptApart)
{
    const QStringList accounts{QStringLiteral("Schlüssel"), QStringLiteral("鍵"), QStringLiteral("a b'c\"d%"),
                               QString(500, QChar(u'k'))};
    for (const QString &account : accounts) {
        EXPECT_EQ(this->store().add(this->m_service, account, account.toUtf8()), credentialSuccess);
    }
    for (const QString &account : accounts) {
        EXPECT_EQ(this->store().copyMatching(this->m_service, account).value, account.toUtf8());
        EXPECT_EQ(this->store().remove(this->m_service, account), credentialSuccess);
    }
}

REGISTER_TYPED_TEST_SUITE_P(CredentialStoreContract, AnAddedEntryIsFound,
                            ASecondAddOfAnAccountIsADuplicateAndKeepsTheFirstValue,
                            AnUpdateReplacesTheValueAndThereIsStillOneEntry,
                            AMissingEntryIsNotFoundByLookupUpdateAndRemove, ARemovedEntryCanBeAddedAgain,
                            BytesThatAreNotTextAreStoredUnchanged, AnEmptyValueIsAValue, EachAccountHasItsOwnEntry,
                            AccountsInAnyScriptAndOfAnyLengthAreKeptApart);

} // namespace quillhaven::test
