// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/FprintFixture.h"
#include "platform/linux/session/FprintVerification.h"

#include <QLocalServer>
#include <QProcess>
#include <QTemporaryDir>

#include <csignal>

namespace quillhaven::test {
namespace {

/// A process that is killed when this object is destroyed.
class Daemon
{
public:
    Daemon(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment = {})
    {
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted());
    }
    ~Daemon()
    {
        send(SIGKILL);
        m_process.waitForFinished();
    }
    Daemon(const Daemon &) = delete;
    Daemon &operator=(const Daemon &) = delete;

    void send(int signal)
    {
        if (m_process.state() == QProcess::Running) {
            ::kill(static_cast<pid_t>(m_process.processId()), signal);
        }
    }

private:
    QProcess m_process;
};

/// Sets an environment variable during its lifetime.
class ScopedVariable
{
public:
    ScopedVariable(const char *name, const QByteArray &value) : m_name(name), m_former(qgetenv(name))
    {
        qputenv(m_name, value);
    }
    ~ScopedVariable() { qputenv(m_name, m_former); }
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

private:
    const char *m_name;
    QByteArray m_former;
};

class FprintAbsenceTest : public FprintFixture
{
protected:
    ~FprintAbsenceTest() override { expectNoPrompt(); }

    /// Starts fprintd on the bus, with a reader or without.
    std::unique_ptr<Daemon> startFprintd(bool hasReader = true)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!hasReader) {
            environment.remove(QStringLiteral("FP_VIRTUAL_DEVICE"));
        }
        auto daemon = std::make_unique<Daemon>(QStringLiteral("/usr/libexec/fprintd"),
                                               QStringList{QStringLiteral("--no-timeout")}, environment);
        const FprintClient client;
        EXPECT_TRUE(spinUntil([&client] { return client.hasService(); }));
        return daemon;
    }
    std::unique_ptr<Daemon> startFprintdWithAlice()
    {
        auto daemon = startFprintd();
        FprintClient client;
        client.forgetAllFingers();
        client.enrol("alice");
        client.setScanType("press");
        return daemon;
    }

    QTemporaryDir folder;
};

TEST_F(FprintAbsenceTest, CannotEvaluateWithoutFprintd)
{
    EXPECT_FALSE(canEvaluatePolicy());
    EXPECT_FALSE(evaluatePolicy());
}

TEST_F(FprintAbsenceTest, CannotEvaluateWithoutAReader)
{
    const auto fprintd = startFprintd(false);
    EXPECT_FALSE(canEvaluatePolicy());
    EXPECT_FALSE(evaluatePolicy());
}

TEST_F(FprintAbsenceTest, AReaderThatIsUnpluggedWhileItWaitsReturnsFalse)
{
    const auto fprintd = startFprintdWithAlice();
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("UNPLUG"));
    EXPECT_FALSE(evaluation.wait());
    expectNoPrompt();
    EXPECT_TRUE(spinUntil([this] { return !canEvaluatePolicy(); }));
}

TEST_F(FprintAbsenceTest, IfFprintdEndsWhileTheReaderWaitsItReturnsFalseAndTheNextFprintdIsUsed)
{
    auto fprintd = startFprintdWithAlice();
    const auto lost = beginEvaluation();
    fprintd.reset();
    EXPECT_FALSE(lost.wait());
    expectNoPrompt();
    EXPECT_FALSE(canEvaluatePolicy());

    fprintd = startFprintdWithAlice();
    EXPECT_TRUE(canEvaluatePolicy());
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAbsenceTest, CannotEvaluateIfFprintdDoesNotAnswerAndTheEventLoopIsNotBlocked)
{
    const auto fprintd = startFprintdWithAlice();
    fprintd->send(SIGSTOP);
    const Ticker ticker;
    EXPECT_FALSE(canEvaluatePolicy());
    EXPECT_GE(ticker.count(), 20);
    EXPECT_FALSE(evaluatePolicy());
    fprintd->send(SIGCONT);
    EXPECT_TRUE(canEvaluatePolicy());
}

TEST_F(FprintAbsenceTest, AConnectionWithAnUnansweredCallIsNotUsedAgain)
{
    const auto fprintd = startFprintd();
    QThreadPool pool;
    const auto bus = runTask(BusConnection::open(pool, MessageBus::System, std::chrono::seconds(2)));
    ASSERT_TRUE(bus);
    EXPECT_TRUE(runTask(FprintDevice::findDefault(bus)).has_value());
    EXPECT_TRUE(bus->isUsable());
    fprintd->send(SIGSTOP);
    EXPECT_FALSE(runTask(FprintDevice::findDefault(bus)).has_value());
    EXPECT_FALSE(bus->isUsable());
}

TEST_F(FprintAbsenceTest, AReaderClaimedByAnUnresponsiveFprintdIsReleasedLater)
{
    const auto fprintd = startFprintdWithAlice();
    const auto evaluation = beginEvaluation();
    fprintd->send(SIGSTOP);
    authenticator->cancel();
    EXPECT_FALSE(evaluation.wait());
    fprintd->send(SIGCONT);
    FprintClient other;
    EXPECT_TRUE(spinUntil([&other] { return other.claim(); }));
    other.release();
    const auto next = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(next.wait());
}

TEST_F(FprintAbsenceTest, CannotEvaluateUntilThereIsABus)
{
    {
        const ScopedVariable address("DBUS_SYSTEM_BUS_ADDRESS",
                                     "unix:path=" + folder.filePath(QStringLiteral("none")).toUtf8());
        EXPECT_FALSE(canEvaluatePolicy());
        EXPECT_FALSE(evaluatePolicy());
    }
    const auto fprintd = startFprintdWithAlice();
    EXPECT_TRUE(canEvaluatePolicy());
}

TEST_F(FprintAbsenceTest, CannotEvaluateIfTheBusDoesNotAnswerAndTheEventLoopIsNotBlocked)
{
    QLocalServer silent;
    ASSERT_TRUE(silent.listen(folder.filePath(QStringLiteral("silent"))));
    const ScopedVariable address("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + silent.fullServerName().toUtf8());
    const Ticker ticker;
    EXPECT_FALSE(canEvaluatePolicy());
    EXPECT_GE(ticker.count(), 20);
    EXPECT_FALSE(evaluatePolicy());
}

TEST_F(FprintAbsenceTest, IfTheBusEndsWhileTheReaderWaitsItReturnsFalse)
{
    const QByteArray busAddress = "unix:path=" + folder.filePath(QStringLiteral("bus")).toUtf8();
    const ScopedVariable address("DBUS_SYSTEM_BUS_ADDRESS", busAddress);
    auto bus = std::make_unique<Daemon>(QStringLiteral("dbus-daemon"),
                                        QStringList{QStringLiteral("--config-file=" SYSTEM_BUS_CONF),
                                                    QStringLiteral("--nofork"),
                                                    QStringLiteral("--address=") + QString::fromUtf8(busAddress)},
                                        QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(spinUntil([this] { return QFile::exists(folder.filePath(QStringLiteral("bus"))); }));
    Daemon policy(QStringLiteral("/usr/bin/python3"),
                  {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                   QStringLiteral("--template"), QStringLiteral("polkitd")},
                  QProcessEnvironment::systemEnvironment());
    FprintClient client;
    ASSERT_TRUE(spinUntil([&client] { return client.hasPolicyService(); }));
    client.setAllowed(true);
    const auto fprintd = startFprintdWithAlice();

    const auto evaluation = beginEvaluation();
    bus.reset();
    EXPECT_FALSE(evaluation.wait());
    expectNoPrompt();
    EXPECT_FALSE(canEvaluatePolicy());
}

} // namespace
} // namespace quillhaven::test
