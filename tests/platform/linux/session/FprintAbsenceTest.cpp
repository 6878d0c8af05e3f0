// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"
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

/// A system bus of one test, with a policy service that allows everything.
class OwnBus
{
public:
    OwnBus(const QString &folder, const QString &configuration)
        : m_address("unix:path=" + QFile::encodeName(folder) + "/bus"),
          m_variable("DBUS_SYSTEM_BUS_ADDRESS", m_address),
          m_bus(std::make_unique<Daemon>(QStringLiteral("dbus-daemon"),
                                         QStringList{QStringLiteral("--config-file=") + configuration,
                                                     QStringLiteral("--nofork"),
                                                     QStringLiteral("--address=") + QString::fromUtf8(m_address)},
                                         QProcessEnvironment::systemEnvironment()))
    {
        EXPECT_TRUE(spinUntil([&] { return QFile::exists(folder + QStringLiteral("/bus")); }));
        m_policy = std::make_unique<Daemon>(QStringLiteral("/usr/bin/python3"),
                                            QStringList{QStringLiteral("-m"), QStringLiteral("dbusmock"),
                                                        QStringLiteral("--system"), QStringLiteral("--template"),
                                                        QStringLiteral("polkitd")},
                                            QProcessEnvironment::systemEnvironment());
        FprintClient client;
        EXPECT_TRUE(spinUntil([&client] { return client.hasPolicyService(); }));
        client.setAllowed(true);
    }

    void end() { m_bus.reset(); }

private:
    QByteArray m_address;
    ScopedVariable m_variable;
    std::unique_ptr<Daemon> m_bus;
    std::unique_ptr<Daemon> m_policy;
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
        // fprintd looks for readers once, and misses the virtual one while that of the daemon before is closing.
        for (int further = 0; further < 5 && !client.findsReader(3000); ++further) {
            daemon.reset();
            daemon = startFprintd();
        }
        client.forgetAllFingers();
        client.enrol("alice");
        client.setScanType("press");
        return daemon;
    }

    void write(const QString &name, const QByteArray &content)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
    }
    /// Writes the configuration of a bus that starts fprintd, which begins once there is a file called "go".
    QString writeActivatingBus()
    {
        const QByteArray here = QFile::encodeName(folder.path());
        write(QStringLiteral("start-fprintd"), "#!/bin/bash\nuntil [ -e " + here +
                                                   "/go ]; do read -rt 0.02 <> <(:); done\n"
                                                   "exec /usr/libexec/fprintd --no-timeout\n");
        EXPECT_TRUE(QFile::setPermissions(folder.filePath(QStringLiteral("start-fprintd")),
                                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        write(QStringLiteral("net.reactivated.Fprint.service"),
              "[D-BUS Service]\nName=net.reactivated.Fprint\nExec=" + here + "/start-fprintd\n");
        QFile plain(QStringLiteral(SYSTEM_BUS_CONF));
        EXPECT_TRUE(plain.open(QIODevice::ReadOnly));
        QByteArray configuration = plain.readAll();
        // A bus of the type "system" starts services by a helper of the real system.
        configuration.replace("<type>system</type>", "<type>session</type>\n  <servicedir>" + here + "</servicedir>");
        write(QStringLiteral("bus.conf"), configuration);
        return folder.filePath(QStringLiteral("bus.conf"));
    }

    const QString waitingForReader = QStringLiteral("Waiting for the fingerprint reader");
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
    authenticator = std::make_unique<FprintAuthenticator>(std::chrono::seconds(2));
    fprintd->send(SIGSTOP);
    const Ticker ticker;
    EXPECT_FALSE(canEvaluatePolicy());
    EXPECT_GE(ticker.count(), 20);
    EXPECT_FALSE(evaluatePolicy());
    fprintd->send(SIGCONT);
    EXPECT_TRUE(canEvaluatePolicy());
}

TEST_F(FprintAbsenceTest, AnUnresponsiveFprintdIsWaitedForWithAPromptThatCanBeCancelled)
{
    const auto fprintd = startFprintdWithAlice();
    EXPECT_TRUE(canEvaluatePolicy());
    const auto expectWaiting = [this] {
        EXPECT_TRUE(spinUntil([this] { return authenticator->hint() == waitingForReader; }));
        EXPECT_TRUE(authenticator->isPrompting());
        EXPECT_EQ(WorkInFlight::count(), 0) << "the end of the program is not held up";
    };
    fprintd->send(SIGSTOP);
    const RunningTask<bool> cancelled(authenticator->canEvaluatePolicy());
    EXPECT_FALSE(authenticator->isPrompting()) << "an answer may come at once";
    expectWaiting();
    authenticator->cancel();
    expectNoPrompt();
    EXPECT_FALSE(cancelled.wait());

    const RunningTask<bool> next(authenticator->canEvaluatePolicy());
    expectWaiting();
    fprintd->send(SIGCONT);
    EXPECT_TRUE(next.wait());
    expectNoPrompt();
}

TEST_F(FprintAbsenceTest, DestroyingItWhileFprintdIsUnresponsiveReturnsFalse)
{
    const auto fprintd = startFprintdWithAlice();
    fprintd->send(SIGSTOP);
    const RunningTask<bool> asking(authenticator->canEvaluatePolicy());
    EXPECT_TRUE(spinUntil([this] { return authenticator->isPrompting(); }));
    authenticator.reset();
    EXPECT_FALSE(asking.wait());
    authenticator = std::make_unique<FprintAuthenticator>();
}

TEST_F(FprintAbsenceTest, AConnectionWithAnUnansweredCallIsNotUsedAgain)
{
    const auto fprintd = startFprintd();
    QThreadPool pool;
    const auto bus = runTask(BusConnection::open(pool, MessageBus::System, std::chrono::seconds(2)));
    ASSERT_TRUE(bus);
    const std::chrono::seconds limit(2);
    EXPECT_TRUE(runTask(FprintDevice::findDefault(bus, limit)).has_value());
    EXPECT_TRUE(bus->isUsable());
    fprintd->send(SIGSTOP);
    EXPECT_FALSE(runTask(FprintDevice::findDefault(bus, limit)).has_value());
    EXPECT_FALSE(bus->isUsable());
}

TEST_F(FprintAbsenceTest, AReaderThatOpensSlowlyIsWaitedForWithAPrompt)
{
    const auto fprintd = startFprintdWithAlice();
    fprintd->send(SIGSTOP);
    const Ticker ticker;
    const RunningTask<bool> evaluation(authenticator->evaluatePolicy(reasonText));
    expectPrompt(waitingForReader);
    EXPECT_TRUE(spinUntil([&] { return ticker.count() >= 300; })); // longer than other calls may take
    EXPECT_FALSE(evaluation.isFinished());
    fprintd->send(SIGCONT);
    expectPrompt(placeFinger);
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

TEST_F(FprintAbsenceTest, AReaderThatDoesNotOpenCanBeCancelled)
{
    const auto fprintd = startFprintdWithAlice();
    fprintd->send(SIGSTOP);
    const RunningTask<bool> cancelled(authenticator->evaluatePolicy(reasonText));
    expectPrompt(waitingForReader);
    authenticator->cancel();
    expectNoPrompt();
    EXPECT_FALSE(cancelled.wait());

    const RunningTask<bool> next(authenticator->evaluatePolicy(reasonText));
    expectPrompt(waitingForReader);
    fprintd->send(SIGCONT);
    expectPrompt(placeFinger);
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(next.wait());
}

TEST_F(FprintAbsenceTest, AReaderClaimedByAnUnresponsiveFprintdIsReleasedLater)
{
    auto fprintd = startFprintdWithAlice();
    const auto evaluation = beginEvaluation();
    fprintd->send(SIGSTOP);
    authenticator->cancel();
    EXPECT_FALSE(evaluation.wait());
    fprintd->send(SIGCONT);
    FprintClient other;
    // fprintd sometimes ends when the client is gone whose claim it carries out; a desktop's bus starts it again.
    EXPECT_TRUE(spinUntil([this, &fprintd, &other] {
        if (!other.hasService() || !other.findsReader(3000)) {
            fprintd.reset();
            fprintd = startFprintd();
        }
        return other.claim();
    }));
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
    OwnBus bus(folder.path(), QStringLiteral(SYSTEM_BUS_CONF));
    const auto fprintd = startFprintdWithAlice();

    const auto evaluation = beginEvaluation();
    bus.end();
    EXPECT_FALSE(evaluation.wait());
    expectNoPrompt();
    EXPECT_FALSE(canEvaluatePolicy());
}

TEST_F(FprintAbsenceTest, AnFprintdThatTheBusStartsSlowlyIsWaitedFor)
{
    const QString configuration = writeActivatingBus();
    OwnBus bus(folder.path(), configuration);
    const Ticker ticker;
    const RunningTask<bool> evaluating(authenticator->canEvaluatePolicy());
    EXPECT_TRUE(spinUntil([&] { return ticker.count() >= 300; })); // longer than other calls may take
    EXPECT_FALSE(evaluating.isFinished());
    write(QStringLiteral("go"), "");
    (void)evaluating.wait(); // whether a finger is enrolled already depends on the tests before

    FprintClient client;
    client.forgetAllFingers();
    client.enrol("alice");
    client.setScanType("press");
    EXPECT_TRUE(canEvaluatePolicy());
    const auto evaluation = beginEvaluation();
    ASSERT_TRUE(FprintClient::sendToReader("SCAN alice"));
    EXPECT_TRUE(evaluation.wait());
}

} // namespace
} // namespace quillhaven::test
