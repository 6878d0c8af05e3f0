// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunTask.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace quillhaven {
namespace {

/// A program that ends when it is asked to, after its work is done.
class TerminationSignalsOf : public ::testing::TestWithParam<int>
{
protected:
    void start(const QStringList &arguments = {})
    {
        program.start(QStringLiteral(SIGNALLED_PROGRAM), arguments);
        ASSERT_TRUE(waitFor("ready\n"));
    }
    void signal() { ASSERT_EQ(::kill(static_cast<pid_t>(program.processId()), GetParam()), 0); }
    [[nodiscard]] bool waitFor(const QByteArray &line)
    {
        return test::spinUntil([&] {
            output += program.readAllStandardOutput();
            return output.contains(line);
        });
    }
    void expectOrderlyEnd()
    {
        ASSERT_TRUE(test::spinUntil([this] { return program.state() == QProcess::NotRunning; }));
        output += program.readAllStandardOutput();
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        EXPECT_TRUE(output.endsWith("ended\n")) << output.constData();
    }

    QProcess program;
    QByteArray output;
};

INSTANTIATE_TEST_SUITE_P(Signal, TerminationSignalsOf, ::testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto &number) {
                             return number.param == SIGTERM ? "Term" : number.param == SIGINT ? "Int" : "Hup";
                         });

TEST_P(TerminationSignalsOf, TheEventLoopAndTheProgramEnd)
{
    start();
    signal();
    expectOrderlyEnd();
    EXPECT_EQ(output, "ready\nasked\nended\n");
}

TEST_P(TerminationSignalsOf, TheDesktopsRequestToQuitEndsTheProgramToo)
{
    start({QStringLiteral("quits")});
    expectOrderlyEnd();
    EXPECT_EQ(output, "ready\nasked\nended\n");
}

TEST_P(TerminationSignalsOf, WorkInProgressIsFinishedFirst)
{
    start({QStringLiteral("busy")});
    signal();
    ASSERT_TRUE(waitFor("asked\n"));
    program.closeWriteChannel();
    expectOrderlyEnd();
    EXPECT_EQ(output, "ready\nasked\nfinished\nended\n");
}

TEST_P(TerminationSignalsOf, ASecondSignalDoesNotInterruptTheWork)
{
    start({QStringLiteral("busy")});
    signal();
    ASSERT_TRUE(waitFor("asked\n"));
    signal();
    ASSERT_TRUE(waitFor("asked\nasked\n"));
    program.closeWriteChannel();
    expectOrderlyEnd();
    EXPECT_EQ(output, "ready\nasked\nasked\nfinished\nended\n");
}

} // namespace
} // namespace quillhaven
