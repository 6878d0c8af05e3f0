// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/RememberedStore.h"
#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/MockKeyring.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QFile>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;
using ::testing::Contains;
using ::testing::ResultOf;

namespace {

using Kind = RememberedStore::Kind;

const QString markerService = QStringLiteral("com.tarnwick.quillhaven.keyring");

/// A home over several starts of the program, each in a session that has a keyring, another one or none.
class Remembered : public ::testing::Test
{
protected:
    void SetUp() override { restart(); }
    /// The program starts again.
    void restart()
    {
        log.clear();
        store.emplace(directory(), m_random);
    }
    QString directory() const { return home.directories().configuration; }
    QString databasePath() const { return directory() + QStringLiteral("/credentials.db"); }
    RememberedStore note() const { return RememberedStore::readFrom(directory()); }
    CredentialStatus add(const QByteArray &value = "mine") { return store->add(service, account, value); }
    CredentialStore::Match match() { return store->copyMatching(service, account); }
    bool hasLogged(const QString &text) const
    {
        const QStringList lines = log.lines();
        return std::ranges::any_of(lines, [&](const QString &line) { return line.contains(text); });
    }
    void expectNothingIsReadOrStored(const QString &sentence)
    {
        EXPECT_EQ(match().status, credentialNotAvailable);
        EXPECT_TRUE(hasLogged(sentence)) << qUtf8Printable(log.lines().join(QLatin1Char('\n')));
        EXPECT_EQ(store->prepareForWriting(), credentialNotAvailable);
        EXPECT_EQ(add("lost"), credentialNotAvailable);
        EXPECT_EQ(store->update(service, account, "lost"), credentialNotAvailable);
        EXPECT_EQ(store->remove(service, account), credentialNotAvailable);
    }
    /// Stores a password in a session without a keyring.
    void storeInEmbeddedStore()
    {
        ASSERT_EQ(add(), credentialSuccess);
        ASSERT_EQ(note().kind, Kind::Embedded);
    }

    const QString service = keychainServiceName;
    const QString account = QStringLiteral("master_password");
    const QString anotherKeyring = QStringLiteral("The passwords are in another keyring than the one of this session.");
    const QString noKeyring = QStringLiteral("The passwords are in the desktop's keyring, and this session has none.");
    TemporaryHome home;
    LogCapture log;
    std::optional<SystemCredentialStore> store;

private:
    OpenSslRandomSource m_random;
};

} // namespace

TEST_F(Remembered, NothingIsNotedBeforeSomethingIsStored)
{
    MockKeyring keyring;
    EXPECT_EQ(match().status, credentialItemNotFound);
    EXPECT_EQ(store->prepareForWriting(), credentialSuccess);
    EXPECT_EQ(note().kind, Kind::None);
    EXPECT_EQ(keyring.entries(), 0);
}

TEST_F(Remembered, TheKeyringOfTheFirstPasswordIsMarkedAndFoundAtTheNextStart)
{
    MockKeyring keyring;
    ASSERT_EQ(add(), credentialSuccess);
    EXPECT_EQ(note().kind, Kind::Keyring);
    EXPECT_EQ(keyring.entries(), 2);
    struct stat status{};
    ASSERT_EQ(stat(QFile::encodeName(RememberedStore::path(directory())).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);

    restart();
    EXPECT_EQ(match().value, QByteArray("mine"));
    EXPECT_EQ(keyring.entries(), 2);
    EXPECT_EQ(keyring.prompts(), 0);
}

TEST_F(Remembered, APasswordFoundInTheKeyringIsEnoughToRememberIt)
{
    MockKeyring keyring;
    keyring.addEntry(service, account, false);
    EXPECT_EQ(match().value, QByteArray("secret"));
    EXPECT_EQ(note().kind, Kind::Keyring);
}

TEST_F(Remembered, AKeyringThatIsAlreadyMarkedGetsNoSecondMarker)
{
    MockKeyring keyring;
    keyring.addEntry(markerService, QStringLiteral("of another home"), false);
    ASSERT_EQ(add(), credentialSuccess);
    EXPECT_EQ(note().marker, QStringLiteral("of another home"));
    EXPECT_EQ(keyring.entries(), 2);
}

TEST_F(Remembered, WithoutItsKeyringNothingIsReadOrStoredElsewhereUntilItIsBack)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    restart();
    expectNothingIsReadOrStored(noKeyring);
    EXPECT_FALSE(QFile::exists(databasePath()));
    EXPECT_EQ(store->place(), CredentialStore::Place::Keyring);

    MockKeyring keyring;
    keyring.addEntry(markerService, note().marker, true);
    keyring.addEntry(service, account, false);
    EXPECT_EQ(match().status, credentialNotAvailable) << "looked for it without being asked to";
    EXPECT_EQ(store->tryAgain(), credentialSuccess);
    EXPECT_EQ(match().value, QByteArray("secret"));
    EXPECT_EQ(keyring.prompts(), 0) << "the marker is found, not read";
}

TEST_F(Remembered, InAnotherKeyringNothingIsReadOrStored)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    restart();
    MockKeyring other;
    other.addEntry(service, account, false);
    other.addEntry(markerService, QStringLiteral("of another home"), false);
    expectNothingIsReadOrStored(anotherKeyring);
    EXPECT_EQ(other.entries(), 2);
    EXPECT_EQ(store->tryAgain(), credentialNotAvailable);
}

TEST_F(Remembered, AKeyringRestartedWhileTheProgramIsRunningIsRecognised)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    MockKeyring keyring;
    keyring.addEntry(markerService, note().marker, false);
    EXPECT_EQ(add("again"), credentialSuccess);
    EXPECT_EQ(match().value, QByteArray("again"));
}

TEST_F(Remembered, AnotherKeyringThatAppearsWhileTheProgramIsRunningGetsNothing)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    MockKeyring other;
    EXPECT_EQ(add("lost"), credentialNotAvailable);
    EXPECT_EQ(other.entries(), 0);
    EXPECT_TRUE(hasLogged(anotherKeyring));
}

TEST_F(Remembered, ALockedKeyringThatHidesItsMarkerIsUnlockedAndNotTakenForAnother)
{
    MockKeyring keyring;
    ASSERT_EQ(add(), credentialSuccess);
    restart();
    keyring.change(QStringLiteral("collection"), QStringLiteral("locked"));
    keyring.change(QStringLiteral("answer"), QStringLiteral("dismiss"));
    EXPECT_EQ(match().status, credentialInteractionNotAllowed);
    EXPECT_EQ(keyring.prompts(), 1);
    keyring.change(QStringLiteral("answer"), QStringLiteral("allow"));
    EXPECT_EQ(match().value, QByteArray("mine"));
}

TEST_F(Remembered, TheUserCanGiveUpAKeyringThatIsGone)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    restart();
    EXPECT_EQ(match().status, credentialNotAvailable);
    EXPECT_EQ(store->useStoreAtHand(), credentialSuccess);
    EXPECT_TRUE(hasLogged(QStringLiteral("is given up, as the user asked")));
    EXPECT_EQ(note().kind, Kind::None);
    EXPECT_EQ(match().status, credentialItemNotFound);
    EXPECT_EQ(add("new"), credentialSuccess);
    EXPECT_EQ(note().kind, Kind::Embedded);

    const MockKeyring keyring;
    restart();
    EXPECT_EQ(match().value, QByteArray("new"));
}

TEST_F(Remembered, TheUserCanChangeToTheKeyringOfThisSession)
{
    {
        const MockKeyring keyring;
        ASSERT_EQ(add(), credentialSuccess);
    }
    restart();
    MockKeyring other;
    EXPECT_EQ(match().status, credentialNotAvailable);
    EXPECT_EQ(store->useStoreAtHand(), credentialSuccess);
    EXPECT_EQ(add("new"), credentialSuccess);
    restart();
    EXPECT_EQ(match().value, QByteArray("new"));
    EXPECT_EQ(other.entries(), 2);
}

TEST_F(Remembered, PasswordsOfTheEmbeddedStoreAreFoundInASessionWithAKeyring)
{
    storeInEmbeddedStore();
    MockKeyring keyring;
    restart();
    EXPECT_EQ(match().value, QByteArray("mine"));
    EXPECT_EQ(keyring.entries(), 0);
    EXPECT_TRUE(hasLogged(QStringLiteral("Credentials are kept in the program's own store, in ")));
}

TEST_F(Remembered, AHomeWithEntriesInTheEmbeddedStoreAndNoNoteKeepsThem)
{
    storeInEmbeddedStore();
    ASSERT_TRUE(RememberedStore::removeFrom(directory()));
    const MockKeyring keyring;
    restart();
    EXPECT_EQ(match().value, QByteArray("mine"));
    EXPECT_EQ(note().kind, Kind::Embedded);
}

TEST_F(Remembered, AnEmptyEmbeddedStoreWithoutANoteDoesNotKeepTheKeyringFromBeingChosen)
{
    EXPECT_EQ(match().status, credentialItemNotFound);
    ASSERT_TRUE(QFile::exists(databasePath()));
    MockKeyring keyring;
    restart();
    EXPECT_EQ(add(), credentialSuccess);
    EXPECT_EQ(keyring.entries(), 2);
}

TEST_F(Remembered, AMissingEmbeddedStoreIsNotReplaced)
{
    storeInEmbeddedStore();
    store.reset();
    ASSERT_TRUE(QFile::remove(databasePath()));
    const MockKeyring keyring;
    restart();
    expectNothingIsReadOrStored(QStringLiteral("the program's own store, which is missing: ") + databasePath());
    EXPECT_FALSE(QFile::exists(databasePath()));
}

TEST_F(Remembered, ADamagedEmbeddedStoreIsRefusedAndSetAsideOnlyWhenTheUserGivesItUp)
{
    storeInEmbeddedStore();
    store.reset();
    const QByteArray rubbish(5000, 'r');
    home.write(QStringLiteral(".config/quillhaven/credentials.db"), rubbish);
    restart();
    expectNothingIsReadOrStored(QStringLiteral("the program's own store, which is damaged: ") + databasePath());
    EXPECT_EQ(TemporaryHome::read(databasePath()), rubbish);

    EXPECT_EQ(store->useStoreAtHand(), credentialSuccess);
    EXPECT_EQ(add("new"), credentialSuccess);
    EXPECT_EQ(match().value, QByteArray("new"));
    const QStringList aside = QDir(directory()).entryList({QStringLiteral("credentials.db.unusable-*Z")}, QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_EQ(TemporaryHome::read(directory() + QLatin1Char('/') + aside.first()), rubbish);
}

TEST_F(Remembered, ANoteThatCannotBeReadIsNotTakenForAMissingOne)
{
    home.write(QStringLiteral(".config/quillhaven/credential-store.json"), "{\"store\": \"Secr");
    const MockKeyring keyring;
    expectNothingIsReadOrStored(QStringLiteral("The note of where the passwords are kept cannot be read: "));
    EXPECT_EQ(store->useStoreAtHand(), credentialSuccess);
    EXPECT_EQ(add(), credentialSuccess);
    EXPECT_EQ(note().kind, Kind::Keyring);
}
