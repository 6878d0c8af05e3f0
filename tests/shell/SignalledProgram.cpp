// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "shell/TerminationSignals.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QThreadPool>

#include <cstdio>
#include <optional>
#include <unistd.h>

namespace {

void say(const char *line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

// SignalledProgram [busy] [quits]: handles signals like the program. With "busy" some work is in progress until its
// standard input is closed. With "quits" the desktop asks it to quit. It has a second thread, which would receive a
// signal that is not blocked.
int main(int argc, char **argv)
{
    using namespace quillhaven;
    TerminationSignals::block();
    const QCoreApplication application(argc, argv);
    QThreadPool::globalInstance()->start([] {});
    QtApplicationPresence presence;
    const TerminationSignals signals;
    QObject::connect(&signals, &TerminationSignals::terminationRequested, &application, [&presence] {
        say("asked");
        presence.terminate();
    });
    std::optional<WorkInFlight::Piece> work;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    if (QCoreApplication::arguments().contains(QStringLiteral("busy"))) {
        work.emplace();
        QObject::connect(&input, &QSocketNotifier::activated, &application, [&] {
            input.setEnabled(false);
            say("finished");
            work.reset();
        });
    } else {
        input.setEnabled(false);
    }
    QMetaObject::invokeMethod(&input, [] { say("ready"); }, Qt::QueuedConnection);
    if (QCoreApplication::arguments().contains(QStringLiteral("quits"))) {
        const auto askToQuit = [] {
            QEvent quit(QEvent::Quit);
            QCoreApplication::sendEvent(QCoreApplication::instance(), &quit);
        };
        QMetaObject::invokeMethod(&input, askToQuit, Qt::QueuedConnection);
    }
    const int result = QCoreApplication::exec();
    say("ended");
    return result;
}
