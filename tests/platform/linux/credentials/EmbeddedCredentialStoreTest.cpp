// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/EmbeddedCredentialStore.h"
#include "contract/CredentialStoreContract.h"
#include "support/InMemoryCredentialStore.h"
#include "support/TemporaryHome.h"
#include "support/TestRandom.h"

#include <QDir>
#include <QFile>

#include <sqlite3.h>

#include <sys/stat.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

class FreshMap
{
public:
    [[nodiscard]] CredentialStore &store() { return m_store; }

private:
    InMemoryCredentialStore m_store;
};

class FreshEmbeddedStore
{
public:
    [[nodiscard]] CredentialStore &store() { return m_store; }

private:
    TemporaryHome m_home;
    OpenSslRandomSource m_random;
    EmbeddedCredentialStore m_store{m_home.directories().configuration, m_random};
};

mode_t modeOf(const QString &path)
{
    struct stat status{};
    EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
    return status.st_mode & 07777;
}

class EmbeddedStore : public ::testing::Test
{
protected:
    /// Opens the store in the same folder again, as another run of the program does.
    void restart() { m_store.emplace(m_home.directories().configuration, m_random); }
    void SetUp() override { restart(); }

    CredentialStatus add(const QByteArray &value, const QString &account)
    {
        return m_store->add(m_service, account, value);
    }
    CredentialStore::Match match(const QString &account) { return m_store->copyMatching(m_service, account); }

    /// All bytes of the files in the folder, including the write-ahead log.
    QByteArray everythingOnDisk()
    {
        QByteArray bytes;
        const QDir folder(m_home.directories().configuration);
        for (const QString &name : folder.entryList(QDir::Files | QDir::Hidden)) {
            bytes += TemporaryHome::read(folder.filePath(name));
        }
        return bytes;
    }

    /// Runs a statement on the database, between two runs of the program.
    void onDatabase(const char *sql)
    {
        m_store.reset();
        onOpenDatabase(sql);
        restart();
    }
    /// The same while the program has the database open.
    void onOpenDatabase(const char *sql)
    {
        sqlite3 *database = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(m_databasePath).constData(), &database), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
        sqlite3_close(database);
    }

    void writeKey(const QByteArray &bytes)
    {
        QFile file(m_keyPath);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    /// Expects that no value is read or overwritten, and that each is readable again after the right key was restored.
    void expectErrorsUntilTheKeyIsRestored(const QByteArray &rightKey)
    {
        const bool hasKey = QFile::exists(m_keyPath);
        const QByteArray key = hasKey ? TemporaryHome::read(m_keyPath) : QByteArray();
        restart();
        EXPECT_EQ(match(m_first).status, credentialDecodeFailed);
        EXPECT_FALSE(match(m_first).value.has_value());
        EXPECT_EQ(add("new", QStringLiteral("third")), credentialDecodeFailed);
        EXPECT_EQ(m_store->update(m_service, m_first, "new"), credentialDecodeFailed);
        EXPECT_EQ(QFile::exists(m_keyPath), hasKey);
        if (hasKey) {
            EXPECT_EQ(TemporaryHome::read(m_keyPath), key);
        }

        writeKey(rightKey);
        restart();
        EXPECT_EQ(match(m_first).value, QByteArray("one"));
        EXPECT_EQ(match(m_second).value, QByteArray("two"));
        EXPECT_EQ(match(QStringLiteral("third")).status, credentialItemNotFound);
    }

    QByteArray addTwo()
    {
        EXPECT_EQ(add("one", m_first), credentialSuccess);
        EXPECT_EQ(add("two", m_second), credentialSuccess);
        return TemporaryHome::read(m_keyPath);
    }

    TemporaryHome m_home;
    const QString m_databasePath = m_home.directories().configuration + QStringLiteral("/credentials.db");
    const QString m_keyPath = m_home.directories().configuration + QStringLiteral("/credentials.key");
    const QString m_service = QStringLiteral("com.tarnwick.quillhaven");
    const QString m_first = QStringLiteral("first");
    const QString m_second = QStringLiteral("second");
    OpenSslRandomSource m_random;
    std::optional<EmbeddedCredentialStore> m_store;
};

} // namespace

namespace quillhaven::test {
INSTANTIATE_TYPED_TEST_SUITE_P(Map, CredentialStoreContract, FreshMap);
INSTANTIATE_TYPED_TEST_SUITE_P(Embedded, CredentialStoreContract, FreshEmbeddedStore);
} // namespace quillhaven::test

TEST_F(EmbeddedStore, AFailedReadIsNotAMissingEntryAndCreatesNoNewKey)
{
    const QByteArray key = addTwo();
    onOpenDatabase("ALTER TABLE defaults RENAME TO elsewhere");
    EXPECT_EQ(match(m_first).status, credentialNotAvailable);
    EXPECT_EQ(add("new", QStringLiteral("third")), credentialNotAvailable);
    EXPECT_EQ(m_store->update(m_service, m_first, "new"), credentialNotAvailable);
    EXPECT_EQ(m_store->remove(m_service, m_first), credentialNotAvailable);
    EXPECT_EQ(TemporaryHome::read(m_keyPath), key);
    onOpenDatabase("ALTER TABLE elsewhere RENAME TO defaults");
    EXPECT_EQ(match(m_first).value, QByteArray("one"));
}

TEST_F(EmbeddedStore, EntriesSurviveARestart)
{
    addTwo();
    restart();
    EXPECT_EQ(match(m_first).value, QByteArray("one"));
    EXPECT_EQ(match(m_second).value, QByteArray("two"));
}

TEST_F(EmbeddedStore, ALookupInANewFolderCreatesNoKey)
{
    EXPECT_EQ(match(m_first).status, credentialItemNotFound);
    EXPECT_FALSE(QFile::exists(m_keyPath));
}

TEST_F(EmbeddedStore, EntriesOfAnotherServiceAreIgnored)
{
    EXPECT_EQ(m_store->add(QStringLiteral("com.tarnwick.other"), m_first, "theirs"), credentialSuccess);
    EXPECT_EQ(match(m_first).status, credentialItemNotFound);
    EXPECT_EQ(add("ours", m_first), credentialSuccess);
    EXPECT_EQ(m_store->copyMatching(QStringLiteral("com.tarnwick.other"), m_first).value, QByteArray("theirs"));
}

TEST_F(EmbeddedStore, OnlyTheOwnerCanAccessItsFiles)
{
    const mode_t before = umask(0);
    addTwo();
    umask(before);
    const QDir folder(m_home.directories().configuration);
    const QStringList names = folder.entryList({QStringLiteral("credentials*")}, QDir::Files);
    EXPECT_GE(names.size(), 2);
    for (const QString &name : names) {
        EXPECT_EQ(modeOf(folder.filePath(name)), 0600u) << name.toStdString();
    }
}

TEST_F(EmbeddedStore, NoValueIsReadableOnDisk)
{
    const QByteArray value("A very particular password 7391");
    EXPECT_EQ(add(value, m_first), credentialSuccess);
    const QByteArray bytes = everythingOnDisk();
    EXPECT_GT(bytes.size(), 32);
    EXPECT_FALSE(bytes.contains(value));
    EXPECT_FALSE(bytes.contains("particular"));
}

TEST_F(EmbeddedStore, TheSameValueIsSealedDifferentlyEachTime)
{
    addTwo();
    ASSERT_EQ(m_store->update(m_service, m_second, "one"), credentialSuccess);
    onDatabase("CREATE TABLE seen AS SELECT DISTINCT value FROM defaults");
    onDatabase("CREATE TABLE two (ok CHECK (ok = 2)); INSERT INTO two SELECT count(*) FROM seen");
}

TEST_F(EmbeddedStore, IfTheKeyIsLostItFailsAndOverwritesNothing)
{
    const QByteArray key = addTwo();
    m_store.reset();
    ASSERT_TRUE(QFile::remove(m_keyPath));
    expectErrorsUntilTheKeyIsRestored(key);
}

TEST_F(EmbeddedStore, IfTheKeyIsTooShortItFailsAndOverwritesNothing)
{
    const QByteArray key = addTwo();
    writeKey(key.left(31));
    expectErrorsUntilTheKeyIsRestored(key);
}

TEST_F(EmbeddedStore, IfTheKeyIsTooLongItFailsAndOverwritesNothing)
{
    const QByteArray key = addTwo();
    writeKey(key + 'x');
    expectErrorsUntilTheKeyIsRestored(key);
}

TEST_F(EmbeddedStore, IfOneBitOfTheKeyIsFlippedItFailsAndOverwritesNothing)
{
    const QByteArray key = addTwo();
    QByteArray damaged = key;
    damaged[7] = static_cast<char>(damaged[7] ^ 0x10);
    writeKey(damaged);
    expectErrorsUntilTheKeyIsRestored(key);
}

TEST_F(EmbeddedStore, EntriesWithALostKeyCanBeRemovedAndTheStoreUsesANewKey)
{
    addTwo();
    m_store.reset();
    writeKey("damaged");
    restart();
    EXPECT_EQ(m_store->remove(m_service, m_first), credentialSuccess);
    EXPECT_EQ(m_store->remove(m_service, m_second), credentialSuccess);
    EXPECT_EQ(add("new", m_first), credentialSuccess);
    EXPECT_EQ(match(m_first).value, QByteArray("new"));
    EXPECT_EQ(TemporaryHome::read(m_keyPath).size(), 32);
    EXPECT_EQ(modeOf(m_keyPath), 0600u);
}

TEST_F(EmbeddedStore, AChangedByteOfAValueIsNotOpened)
{
    addTwo();
    onDatabase("UPDATE defaults SET value = substr(value, 1, 13) || x'00' || substr(value, 15) "
               "WHERE key LIKE '%first'");
    EXPECT_EQ(match(m_first).status, credentialDecodeFailed);
    EXPECT_EQ(match(m_second).value, QByteArray("two"));
}

TEST_F(EmbeddedStore, ATruncatedValueIsNotOpened)
{
    addTwo();
    onDatabase("UPDATE defaults SET value = substr(value, 1, 20) WHERE key LIKE '%first'");
    EXPECT_EQ(match(m_first).status, credentialDecodeFailed);
}

TEST_F(EmbeddedStore, ADamagedValueCanBeReplacedIfTheKeyIsValid)
{
    addTwo();
    onDatabase("UPDATE defaults SET value = x'00' WHERE key LIKE '%first'");
    EXPECT_EQ(m_store->update(m_service, m_first, "again"), credentialSuccess);
    EXPECT_EQ(match(m_first).value, QByteArray("again"));
}

TEST_F(EmbeddedStore, AValueMovedToAnotherAccountIsNotOpened)
{
    addTwo();
    onDatabase("UPDATE defaults SET value = (SELECT value FROM defaults WHERE key LIKE '%second') "
               "WHERE key LIKE '%first'");
    EXPECT_EQ(match(m_first).status, credentialDecodeFailed);
    EXPECT_EQ(match(m_second).value, QByteArray("two"));
}

TEST_F(EmbeddedStore, AFileThatIsNotADatabaseIsReportedAndNotChanged)
{
    m_store.reset();
    const QByteArray rubbish(5000, 'r');
    m_home.write(QStringLiteral(".config/quillhaven/credentials.db"), rubbish);
    restart();
    EXPECT_EQ(match(m_first).status, credentialNotAvailable);
    EXPECT_EQ(add("one", m_first), credentialNotAvailable);
    EXPECT_EQ(m_store->update(m_service, m_first, "one"), credentialNotAvailable);
    EXPECT_EQ(m_store->remove(m_service, m_first), credentialNotAvailable);
    EXPECT_EQ(TemporaryHome::read(m_databasePath), rubbish);
}

TEST_F(EmbeddedStore, AMissingFolderIsCreated)
{
    const QString folder = m_home.path(QStringLiteral("not/there/yet"));
    OpenSslRandomSource random;
    EmbeddedCredentialStore store(folder, random);
    EXPECT_EQ(store.add(m_service, m_first, "one"), credentialSuccess);
    EXPECT_EQ(store.copyMatching(m_service, m_first).value, QByteArray("one"));
}

TEST_F(EmbeddedStore, NothingIsSealedIfTheGeneratorFailsForTheKeyOrTheNonce)
{
    FailingRandom failing;
    {
        EmbeddedCredentialStore store(m_home.directories().configuration, failing);
        EXPECT_NE(store.add(m_service, m_first, "one"), credentialSuccess);
        EXPECT_FALSE(QFile::exists(m_keyPath));
    }
    restart();
    EXPECT_EQ(add("one", m_first), credentialSuccess);
    {
        EmbeddedCredentialStore store(m_home.directories().configuration, failing);
        EXPECT_EQ(store.add(m_service, m_second, "two"), credentialNotAvailable);
        EXPECT_EQ(store.update(m_service, m_first, "new"), credentialNotAvailable);
    }
    restart();
    EXPECT_EQ(match(m_first).value, QByteArray("one"));
    EXPECT_EQ(match(m_second).status, credentialItemNotFound);
}
