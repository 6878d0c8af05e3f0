// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/SingleInstance.h"
#include "support/RunTask.h"

#include <QDBusConnection>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <csignal>
#include <sys/stat.h>

namespace quillhaven {
namespace {

using test::spinUntil;
using ::testing::UnorderedElementsAreArray;

const QString activate = QStringLiteral("activate");

/// A process that tries to be the primary instance.
class Claimer
{
public:
    Claimer(const QString &directory, const QStringList &arguments, const QProcessEnvironment &environment)
        : Claimer(directory, directory, arguments, environment)
    {
    }
    Claimer(const QString &directory, const QString &fallback, const QStringList &arguments,
            const QProcessEnvironment &environment)
    {
        m_process.setProcessEnvironment(environment);
        m_process.start(QStringLiteral(INSTANCE_CLAIMER), QStringList{directory, fallback} + arguments);
    }
    ~Claimer()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Claimer(const Claimer &) = delete;
    Claimer &operator=(const Claimer &) = delete;

    [[nodiscard]] QStringList lines()
    {
        m_output += m_process.readAllStandardOutput();
        return QString::fromUtf8(m_output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    [[nodiscard]] bool has(const QString &line) { return lines().contains(line); }
    [[nodiscard]] bool isPrimary() { return has(QStringLiteral("primary")); }
    [[nodiscard]] bool isSecondary() { return has(QStringLiteral("secondary")); }
    [[nodiscard]] bool hasRole() { return isPrimary() || isSecondary(); }
    /// What it received, in order.
    [[nodiscard]] QStringList handedOver()
    {
        QStringList result = lines();
        result.removeOne(QStringLiteral("primary"));
        return result;
    }
    [[nodiscard]] bool waitForRole()
    {
        return spinUntil([this] { return hasRole() || hasEnded(); }) && hasRole();
    }
    [[nodiscard]] bool hasEnded() const { return m_process.state() == QProcess::NotRunning; }
    void announceEnd()
    {
        m_process.write("end\n");
        spinUntil([this] { return has(QStringLiteral("ending")); });
    }
    /// Closes its input, waits until it has ended, and returns its exit code.
    int finish()
    {
        m_process.closeWriteChannel();
        spinUntil([this] { return hasEnded(); });
        return m_process.exitCode();
    }
    void signal(int number) { ::kill(static_cast<pid_t>(m_process.processId()), number); }
    void killAndWait()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QByteArray m_output;
};

/// Owns the name on the bus of the test for a process with another home.
class OtherHolder
{
public:
    OtherHolder() { EXPECT_TRUE(m_bus.registerService(SingleInstance::busName)); }
    ~OtherHolder() { m_bus.unregisterService(SingleInstance::busName); }
    OtherHolder(const OtherHolder &) = delete;
    OtherHolder &operator=(const OtherHolder &) = delete;

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();
};

/// A private bus besides that of the test.
class SecondBus
{
public:
    SecondBus()
    {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
        EXPECT_TRUE(spinUntil([this] { return m_daemon.canReadLine(); }));
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~SecondBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    SecondBus(const SecondBus &) = delete;
    SecondBus &operator=(const SecondBus &) = delete;

    [[nodiscard]] const QString &address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};

/// A desktop session: with the bus of the test's runner, or without a bus.
class SingleInstanceTest : public ::testing::TestWithParam<bool>
{
protected:
    SingleInstanceTest()
    {
        environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
        if (!GetParam()) {
            environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        }
    }

    void SetUp() override { ASSERT_TRUE(qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS")); }

    [[nodiscard]] std::unique_ptr<Claimer> start(const QStringList &urls = {}) const
    {
        return std::make_unique<Claimer>(runtime.path(), urls, environment);
    }
    [[nodiscard]] QString socketPath() const { return runtime.filePath(QStringLiteral("quillhaven.socket")); }

    QTemporaryDir runtime;
    QProcessEnvironment environment;
};

/// The same without a bus.
class SingleInstanceSocketTest : public SingleInstanceTest
{
};

INSTANTIATE_TEST_SUITE_P(Sessions, SingleInstanceTest, ::testing::Values(true, false),
                         [](const auto &session) { return session.param ? "WithBus" : "WithoutBus"; });
INSTANTIATE_TEST_SUITE_P(Sessions, SingleInstanceSocketTest, ::testing::Values(false),
                         [](const auto &) { return "WithoutBus"; });

TEST_P(SingleInstanceTest, EightSimultaneousStartsHaveOnePrimaryThatReceivesEachHandOverOnce)
{
    std::vector<std::unique_ptr<Claimer>> claimers;
    QStringList tasks;
    for (int i = 0; i < 8; ++i) {
        const bool opens = i % 2 == 0;
        const QString url = QStringLiteral("quillhaven://open?number=%1&name=a%20b").arg(i);
        claimers.push_back(start(opens ? QStringList{url} : QStringList()));
        tasks.append(opens ? QStringLiteral("open ") + url : activate);
    }
    Claimer *primary = nullptr;
    for (size_t i = 0; i < claimers.size(); ++i) {
        ASSERT_TRUE(claimers[i]->waitForRole()) << i;
        if (claimers[i]->isPrimary()) {
            EXPECT_FALSE(primary) << "two primaries";
            primary = claimers[i].get();
            tasks[static_cast<qsizetype>(i)].clear();
        } else {
            EXPECT_EQ(claimers[i]->finish(), 0);
        }
    }
    ASSERT_TRUE(primary);
    tasks.removeOne(QString());
    ASSERT_EQ(tasks.size(), 7);
    EXPECT_TRUE(spinUntil([&] { return primary->handedOver().size() >= 7; }));
    EXPECT_EQ(primary->finish(), 0);
    EXPECT_THAT(primary->handedOver(), UnorderedElementsAreArray(tasks));
}

TEST_P(SingleInstanceTest, SeveralUrlsAreSentTogetherWithoutOtherArguments)
{
    const auto primary = start();
    ASSERT_TRUE(primary->waitForRole());
    const QString first = QStringLiteral("quillhaven://unlock?path=/tmp/a%20%22b%22");
    const QString second = QStringLiteral("quillhaven://open");
    const auto later = start({first, QStringLiteral("--verbose"), second});
    ASSERT_TRUE(later->waitForRole());
    EXPECT_TRUE(later->isSecondary());
    EXPECT_TRUE(spinUntil([&] { return !primary->handedOver().isEmpty(); }));
    EXPECT_EQ(primary->handedOver(), QStringList{QStringLiteral("open ") + first + QLatin1Char(' ') + second});
}

TEST_P(SingleInstanceTest, AfterTheFirstEndedTheNextIsPrimary)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    EXPECT_EQ(first->finish(), 0);
    const auto next = start();
    ASSERT_TRUE(next->waitForRole());
    EXPECT_TRUE(next->isPrimary());
}

TEST_P(SingleInstanceTest, AfterTheFirstWasKilledTheNextIsPrimaryAndReachable)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    first->killAndWait();
    EXPECT_TRUE(QFile::exists(socketPath()));

    const auto next = start();
    ASSERT_TRUE(next->waitForRole());
    EXPECT_TRUE(next->isPrimary());
    const auto another = start();
    ASSERT_TRUE(another->waitForRole());
    EXPECT_TRUE(another->isSecondary());
    EXPECT_TRUE(spinUntil([&] { return next->has(activate); }));
}

TEST_P(SingleInstanceTest, AnUnresponsivePrimaryIsStillTheOnlyOne)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    first->signal(SIGSTOP);
    const auto second = start();
    ASSERT_TRUE(second->waitForRole());
    EXPECT_TRUE(second->isSecondary());
    EXPECT_EQ(second->finish(), 0);
    first->signal(SIGCONT);
    EXPECT_TRUE(spinUntil([&] { return first->has(activate); }));
    EXPECT_EQ(first->finish(), 0);
    EXPECT_EQ(first->handedOver(), QStringList{activate});
}

TEST_P(SingleInstanceTest, AStartAtLoginBesideARunningProcessShowsNothing)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    const auto login = start({QStringLiteral("--login-item")});
    ASSERT_TRUE(login->waitForRole());
    EXPECT_TRUE(login->isSecondary());
    EXPECT_EQ(login->finish(), 0);
    const auto user = start();
    ASSERT_TRUE(user->waitForRole());
    EXPECT_TRUE(spinUntil([&] { return !first->handedOver().isEmpty(); }));
    EXPECT_EQ(first->finish(), 0);
    EXPECT_EQ(first->handedOver(), QStringList{activate});
}

TEST_P(SingleInstanceTest, AStartWhileTheFirstIsEndingWaitsAndReplacesIt)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    first->announceEnd();
    const auto next = start();
    const auto login = start({QStringLiteral("--login-item")});
    EXPECT_EQ(first->finish(), 0);
    ASSERT_TRUE(next->waitForRole());
    ASSERT_TRUE(login->waitForRole());
    EXPECT_NE(next->isPrimary(), login->isPrimary());
    EXPECT_EQ(first->handedOver(), QStringList{QStringLiteral("ending")});

    Claimer &primary = next->isPrimary() ? *next : *login;
    const auto another = start();
    ASSERT_TRUE(another->waitForRole());
    EXPECT_TRUE(another->isSecondary());
    EXPECT_TRUE(spinUntil([&] { return primary.has(activate); }));
}

TEST(SingleInstanceSessionsTest, OneProcessForAHomeInSessionsWithDifferentBusesAndWithout)
{
    const QTemporaryDir home;
    const SecondBus bus;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    Claimer first(home.path(), {}, environment);
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    const QTemporaryDir otherRuntime;
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), otherRuntime.path());
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    Claimer second(home.path(), {}, environment);
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
    environment.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
    Claimer third(home.path(), {}, environment);
    ASSERT_TRUE(third.waitForRole());
    EXPECT_TRUE(third.isSecondary());
    EXPECT_TRUE(spinUntil([&] { return first.handedOver().size() == 2; }));
    EXPECT_EQ(first.handedOver(), (QStringList{activate, activate}));
}

TEST(SingleInstanceSessionsTest, AHomeWhoseNameOnTheBusIsTakenByAnotherHasItsOwnProcess)
{
    const QTemporaryDir home;
    const OtherHolder holder;
    Claimer first(home.path(), {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    Claimer second(home.path(), {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
    EXPECT_TRUE(spinUntil([&] { return first.has(activate); }));
}

TEST(SingleInstanceSessionsTest, WithoutASocketTheBusHandsOver)
{
    const QTemporaryDir home;
    const QString folder = home.filePath(QString(120, QLatin1Char('d')));
    Claimer first(folder, {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    Claimer second(folder, {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
    EXPECT_TRUE(spinUntil([&] { return first.has(activate); }));
}

TEST(SingleInstanceSessionsTest, InAFolderThatCannotBeWrittenTheOtherFolderHoldsTheLock)
{
    const QTemporaryDir fallback;
    const QString folder = QStringLiteral("/proc/self/nowhere");
    Claimer first(folder, fallback.path(), {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    Claimer second(folder, fallback.path(), {}, QProcessEnvironment::systemEnvironment());
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
}

TEST_P(SingleInstanceSocketTest, ALockHolderThatNeverListensIsStillTheOnlyOne)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    ASSERT_TRUE(QFile::remove(socketPath()));
    const auto second = start();
    ASSERT_TRUE(second->waitForRole());
    EXPECT_TRUE(second->isSecondary());
    EXPECT_TRUE(second->lines().constFirst().startsWith(
        QStringLiteral("⚠️ Quillhaven is already running, but it does not answer: ")))
        << qUtf8Printable(second->lines().constFirst());
}

TEST_P(SingleInstanceSocketTest, AMissingFolderIsCreated)
{
    const QString folder = runtime.filePath(QStringLiteral("not/there"));
    Claimer first(folder, {}, environment);
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    Claimer second(folder, {}, environment);
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
    EXPECT_TRUE(spinUntil([&] { return first.has(activate); }));
}

TEST_P(SingleInstanceSocketTest, WithAnUnwritableFolderTheProgramDoesNotStart)
{
    const QString file = runtime.filePath(QStringLiteral("file"));
    ASSERT_TRUE(QFile(file).open(QIODevice::WriteOnly));
    for (int i = 0; i < 2; ++i) {
        Claimer claimer(file, {}, environment);
        EXPECT_EQ(claimer.finish(), 1);
        ASSERT_EQ(claimer.lines().size(), 1);
        EXPECT_TRUE(claimer.lines().constFirst().startsWith(QStringLiteral("error ")));
    }
}

TEST_P(SingleInstanceSocketTest, APathTooLongForASocketStillAllowsOnlyOnePrimary)
{
    const QString folder = runtime.filePath(QString(120, QLatin1Char('d')));
    Claimer first(folder, {}, environment);
    ASSERT_TRUE(first.waitForRole());
    EXPECT_TRUE(first.isPrimary());
    Claimer second(folder, {}, environment);
    ASSERT_TRUE(second.waitForRole());
    EXPECT_TRUE(second.isSecondary());
}

TEST_P(SingleInstanceSocketTest, OnlyTheUserCanAccessTheSocket)
{
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    struct stat status{};
    ASSERT_EQ(::stat(QFile::encodeName(socketPath()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 077U, 0U);
}

TEST_P(SingleInstanceSocketTest, AnUnreachableBusIsTreatedAsNoBus)
{
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=") + runtime.filePath(QStringLiteral("no-bus")));
    const auto first = start();
    ASSERT_TRUE(first->waitForRole());
    EXPECT_TRUE(first->isPrimary());
    const auto second = start();
    ASSERT_TRUE(second->waitForRole());
    EXPECT_TRUE(second->isSecondary());
    EXPECT_TRUE(spinUntil([&] { return first->has(activate); }));
}

} // namespace
} // namespace quillhaven
