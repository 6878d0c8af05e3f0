// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/KeychainManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <gio/gio.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(BusGone, TheProgramSurvivesItsSessionBusAndKeepsItsStore)
{
    QProcess bus;
    bus.start(QStringLiteral("dbus-daemon"),
              {QStringLiteral("--config-file=" BUS_CONFIGURATION), QStringLiteral("--nofork"),
               QStringLiteral("--nopidfile"), QStringLiteral("--print-address")});
    ASSERT_TRUE(spinUntil([&] { return bus.canReadLine(); }));
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());
    QProcess keyring;
    keyring.start(QStringLiteral(HELD_KEYRING), {QStringLiteral("--answer-at-once"), QStringLiteral("Abcdefg1")});
    ASSERT_EQ(QProcess::execute(QStringLiteral("gdbus"),
                                {QStringLiteral("wait"), QStringLiteral("--session"), QStringLiteral("--timeout"),
                                 QStringLiteral("60"), QStringLiteral("org.freedesktop.secrets")}),
              0);

    const TemporaryHome home;
    LogCapture log;
    OpenSslRandomSource random;
    SystemCredentialStore store(home.directories().configuration, random);
    const QString account = QStringLiteral("master_password");
    ASSERT_EQ(store.copyMatching(keychainServiceName, account).value, QByteArray("Abcdefg1"));

    GDBusConnection *connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    ASSERT_NE(connection, nullptr);
    bool isClosed = false;
    const auto note = +[](GDBusConnection *, gboolean, GError *, gpointer flag) { *static_cast<bool *>(flag) = true; };
    g_signal_connect(connection, "closed", G_CALLBACK(note), &isClosed);
    bus.kill();
    ASSERT_TRUE(bus.waitForFinished());
    EXPECT_TRUE(spinUntil([&] { return isClosed; }));
    g_object_unref(connection);
    EXPECT_TRUE(spinUntil([&] { return keyring.state() == QProcess::NotRunning; }));

    EXPECT_EQ(store.copyMatching(keychainServiceName, account).status, credentialNotAvailable);
    EXPECT_EQ(store.add(keychainServiceName, account, "new"), credentialNotAvailable);
    EXPECT_EQ(store.place(), CredentialStore::Place::Keyring);
}
