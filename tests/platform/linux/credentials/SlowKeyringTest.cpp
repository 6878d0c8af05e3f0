// SPDX-License-Identifier: GPL-3.0-or-later

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/MasterPasswordManager.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QProcess>
#include <QTimer>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

const QString masterPassword = QStringLiteral("Abcdefg1");
constexpr int minTicks = 50;

/// A program with a keyring that holds every answer back until the test requests it.
class SlowKeyring : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_keyring.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_keyring.start(QStringLiteral(HELD_KEYRING), {masterPassword});
        ASSERT_TRUE(spinUntil([] {
            return QDBusConnection::sessionBus()
                .interface()
                ->isServiceRegistered(QStringLiteral("org.freedesktop.secrets"))
                .value();
        }));
        m_ticking.callOnTimeout([this] { ++m_ticks; });
        m_ticking.start(1);
        const Platform platform = m_services.platform(m_services.fileManager, m_services.defaults, m_store);
        m_manager = std::make_unique<MasterPasswordManager>(platform, m_dialog);
    }
    void TearDown() override
    {
        m_keyring.terminate();
        EXPECT_TRUE(m_keyring.waitForFinished());
    }

    /// Expects that a timer continues while the keyring holds an answer, so that the event loop is not blocked.
    void expectTheLoopTicksWhileHeld()
    {
        ASSERT_TRUE(spinUntil([] { return held() > 0; })) << "the store did not ask the keyring";
        const int before = m_ticks;
        EXPECT_TRUE(spinUntil([&] { return m_ticks >= before + minTicks; }));
        EXPECT_GT(held(), 0) << "the keyring answered without a request";
    }

    static int held() { return ask(QStringLiteral("Held")).arguments().value(0).toInt(); }
    static void release() { ask(QStringLiteral("Release")); }

    TestPlatform m_services;
    LogCapture m_log;
    OpenSslRandomSource m_random;
    SystemCredentialStore m_store{m_services.home.directories().configuration, m_random};
    MasterPasswordDialogManager m_dialog;
    std::unique_ptr<MasterPasswordManager> m_manager;

private:
    static QDBusMessage ask(const QString &method)
    {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/org/freedesktop/secrets"),
            QStringLiteral("com.tarnwick.HeldKeyring"), method));
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        return reply;
    }

    QProcess m_keyring;
    QTimer m_ticking;
    int m_ticks = 0;
};

} // namespace

TEST_F(SlowKeyring, DoesNotBlockTheWindowAndGuardsWaitForIt)
{
    const RunningTask<bool> guard(m_manager->requireAuthenticationOrCancel());
    expectTheLoopTicksWhileHeld();
    EXPECT_FALSE(guard.isFinished()) << "the guard passed before the keyring had answered";
    EXPECT_FALSE(m_dialog.isPresented());

    release();
    ASSERT_TRUE(spinUntil([this] { return m_dialog.isPresented(); }));
    EXPECT_TRUE(m_manager->hasMasterPassword());
    EXPECT_EQ(m_store.place(), CredentialStore::Place::Keyring);

    m_dialog.authenticate(masterPassword);
    expectTheLoopTicksWhileHeld();
    EXPECT_FALSE(guard.isFinished());
    EXPECT_TRUE(m_dialog.isPresented());
    EXPECT_TRUE(m_dialog.isAuthenticating());

    release();
    EXPECT_TRUE(guard.wait());
    EXPECT_TRUE(m_manager->isAuthenticated());
    EXPECT_FALSE(m_dialog.isPresented());
}
