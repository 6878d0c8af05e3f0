// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SecretServiceCredentialStore.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QFile>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// A session whose bus, if it has one, cannot start a keyring.
class NoKeyring : public ::testing::Test
{
protected:
    NoKeyring() { qunsetenv("DBUS_STARTER_ADDRESS"); }
    ~NoKeyring() override
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_busAddress);
        qputenv("XDG_RUNTIME_DIR", m_runtime);
    }

    void expectTheEmbeddedStore()
    {
        LogCapture log;
        const QString folder = m_home.directories().configuration;
        OpenSslRandomSource random;
        SystemCredentialStore chosen(folder, random);
        EXPECT_EQ(chosen.add(m_service, m_account, "secret"), credentialSuccess);
        EXPECT_EQ(chosen.place(), CredentialStore::Place::OwnFile);
        EXPECT_EQ(chosen.update(m_service, m_account, "changed"), credentialSuccess);
        EXPECT_EQ(chosen.copyMatching(m_service, m_account).value, QByteArray("changed"));
        EXPECT_EQ(chosen.remove(m_service, m_account), credentialSuccess);
        EXPECT_TRUE(QFile::exists(folder + QStringLiteral("/credentials.db")));
        EXPECT_EQ(log.lines(), QStringList{QStringLiteral("⚠️ No keyring answers in this session: credentials are kept "
                                                          "in the program's own store, in ") +
                                           folder});
    }

    const QByteArray m_busAddress = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray m_runtime = qgetenv("XDG_RUNTIME_DIR");
    const QString m_service = keychainServiceName;
    const QString m_account = QStringLiteral("master_password");
    TemporaryHome m_home;
};

} // namespace

// The tests without a bus come first, since a connection exists until the process ends.

TEST_F(NoKeyring, WithoutASessionBusTheEmbeddedStoreIsUsedAndLogged)
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_home.path(QStringLiteral("tmp"))));
    expectTheEmbeddedStore();
}

TEST_F(NoKeyring, WithABusThatHasEndedTheEmbeddedStoreIsUsedAndLogged)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(m_home.path(QStringLiteral("gone"))));
    expectTheEmbeddedStore();
}

TEST_F(NoKeyring, OnABusWithoutAKeyringTheEmbeddedStoreIsUsedAndLogged)
{
    ASSERT_FALSE(m_busAddress.isEmpty());
    expectTheEmbeddedStore();
}

TEST_F(NoKeyring, TheKeyringStoreReportsThatNoKeyringIsAvailable)
{
    SecretServiceCredentialStore store;
    EXPECT_EQ(store.copyMatching(m_service, m_account).status, credentialNotAvailable);
    EXPECT_EQ(store.add(m_service, m_account, "secret"), credentialNotAvailable);
    EXPECT_EQ(store.update(m_service, m_account, "secret"), credentialNotAvailable);
    EXPECT_EQ(store.remove(m_service, m_account), credentialNotAvailable);
}
