// SPDX-License-Identifier: GPL-3.0-or-later

// What still runs after the process was asked to end. Each case has its own process.

#include <QProcess>

#include <gtest/gtest.h>

namespace quillhaven::test {
namespace {

QString outputOf(const char *scenario)
{
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    program.start(QStringLiteral(ENDING_PROGRAM), {QString::fromLatin1(scenario)});
    EXPECT_TRUE(program.waitForFinished(60'000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
    return QString::fromUtf8(program.readAllStandardOutput()).trimmed().replace(QLatin1Char('\n'), QLatin1Char('|'));
}

const QString refusedJob = QStringLiteral("⚠️ A job was not started, because the program is ending|ended");

TEST(EndOfWork, AJobPostedAfterTheRequestToEndDoesNotStart)
{
    EXPECT_EQ(outputOf("job posted after the end was asked for"), refusedJob);
}

TEST(EndOfWork, AJobThatHasNotStartedAtTheRequestToEndDoesNotStart)
{
    EXPECT_EQ(outputOf("job posted just before the end was asked for"), refusedJob);
}

TEST(EndOfWork, ARunningOperationIsCompleted)
{
    EXPECT_EQ(outputOf("operation under way"), QStringLiteral("moved while closing|recorded|ended"));
}

TEST(EndOfWork, AnAnswerGivenWhileTheExitIsQueuedResumesNothing)
{
    EXPECT_EQ(outputOf("question answered while the exit is queued"), QStringLiteral("ended"));
}

TEST(EndOfWork, WorkRequestedAfterTheExitDoesNotStart)
{
    EXPECT_EQ(outputOf("work asked for after the end was decided"), QStringLiteral("ended"));
}

} // namespace
} // namespace quillhaven::test
