// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/TemporaryHome.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace quillhaven::test {
namespace {

constexpr int timeoutMs = 30'000;

bool isSanitized()
{
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return true;
#else
    return false;
#endif
}

class ProcessProtectionTest : public ::testing::Test
{
protected:
    void start() { program.start(QStringLiteral(PROTECTED_PROGRAM), QStringList()); }
    void setVariable(const char *name, const QString &value)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(name), value);
        program.setProcessEnvironment(environment);
    }
    void expectNormalEnd()
    {
        program.closeWriteChannel();
        ASSERT_TRUE(program.waitForFinished(timeoutMs));
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_TRUE(program.readAllStandardError().endsWith("ended\n"));
    }
    /// What the program logs to a file that the variable says is the journal, or not.
    QByteArray loggedToFile(bool isJournal)
    {
        const QString file = home.write(QStringLiteral("log"), {});
        struct stat status{};
        EXPECT_EQ(stat(QFile::encodeName(file).constData(), &status), 0);
        setVariable("JOURNAL_STREAM", QStringLiteral("%1:%2")
                                          .arg(static_cast<qulonglong>(status.st_dev))
                                          .arg(static_cast<qulonglong>(status.st_ino) + (isJournal ? 0 : 1)));
        program.setStandardOutputFile(file, QIODevice::Append);
        start();
        expectNormalEnd();
        return TemporaryHome::read(file);
    }

    TemporaryHome home;
    QProcess program;
};

TEST_F(ProcessProtectionTest, AReaderOfTheLogThatGoesAwayDoesNotEndTheProgram)
{
    start();
    ASSERT_TRUE(program.waitForReadyRead(timeoutMs));
    program.closeReadChannel(QProcess::StandardOutput);
    expectNormalEnd();
}

TEST_F(ProcessProtectionTest, TheMemoryCanNeitherBeReadByOthersNorWrittenToTheDisk)
{
    start();
    program.closeWriteChannel();
    ASSERT_TRUE(program.waitForFinished(timeoutMs));
    const QByteArray expected = isSanitized() ? "dumpable 1, core 0\n" : "dumpable 0, core 0\n";
    EXPECT_TRUE(program.readAllStandardError().startsWith(expected));
}

TEST_F(ProcessProtectionTest, APortalCanInspectTheProgramWhoseDialogsItShows)
{
    setVariable("QT_QPA_PLATFORMTHEME", QStringLiteral("xdgdesktopportal"));
    start();
    program.closeWriteChannel();
    ASSERT_TRUE(program.waitForFinished(timeoutMs));
    EXPECT_TRUE(program.readAllStandardError().startsWith("dumpable 1, core 0\n"));
}

TEST_F(ProcessProtectionTest, NothingIsLoggedToTheJournal)
{
    EXPECT_EQ(loggedToFile(true), QByteArray());
}

TEST_F(ProcessProtectionTest, AnotherOutputThanTheJournalGetsTheLog)
{
    EXPECT_EQ(loggedToFile(false), QByteArray("first\nsecond\n"));
}

} // namespace
} // namespace quillhaven::test
