// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/AfterPosted.h"
#include "async/Answer.h"
#include "async/Jobs.h"
#include "async/MainThread.h"
#include "async/OffMainThread.h"
#include "async/WorkInFlight.h"
#include "support/printLogger.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <functional>
#include <map>

namespace quillhaven {
namespace {

void say(const char *line)
{
    printLogger(QString::fromUtf8(line));
}

void close()
{
    WorkInFlight::close([] { QCoreApplication::exit(0); });
}

QCoro::Task<> sayInAJob()
{
    say("job");
    co_return;
}

/// An operation with several steps. The program is asked to end during the first one.
QCoro::Task<> moveThenRecord()
{
    QSemaphore isClosing;
    auto move = [&isClosing] {
        postToMainThread([&isClosing] {
            close();
            close();
            isClosing.release();
        });
        isClosing.acquire();
    };
    co_await offMainThread(std::move(move));
    say(WorkInFlight::isClosing() && !WorkInFlight::isClosed() ? "moved while closing" : "moved");
    co_await offMainThread([] {});
    co_await afterPosted();
    co_await offMainThread([] {});
    say("recorded");
}

QCoro::Task<> continueAfter(Answer<bool> question)
{
    (void)co_await question;
    say("continued");
}

QCoro::Task<> work()
{
    co_await offMainThread([] { say("worked"); });
    say("continued");
}

const std::map<QString, std::function<void()>> scenarios{
    {QStringLiteral("job posted after the end was asked for"),
     [] {
         close();
         startJob(sayInAJob);
     }},
    {QStringLiteral("job posted just before the end was asked for"),
     [] {
         startJob(sayInAJob);
         close();
     }},
    {QStringLiteral("operation under way"), [] { startJob(moveThenRecord); }},
    {QStringLiteral("question answered while the exit is queued"),
     [] {
         const Answer<bool> question;
         continueAfter(question);
         close();
         question.give(true);
     }},
    {QStringLiteral("work asked for after the end was decided"),
     [] {
         WorkInFlight::close([] {
             QCoreApplication::exit(0);
             work();
         });
     }},
};

} // namespace
} // namespace quillhaven

// EndingProgram SCENARIO: ends like the program in the given scenario, and prints what still ran.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QMetaObject::invokeMethod(QCoreApplication::instance(),
                              quillhaven::scenarios.at(QCoreApplication::arguments().at(1)), Qt::QueuedConnection);
    const int result = QCoreApplication::exec();
    QThreadPool::globalInstance()->waitForDone();
    quillhaven::say("ended");
    return result;
}
