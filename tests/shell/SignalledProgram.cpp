// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/WorkInFlight.h"
#include "platform/widgets/QtApplicationPresence.h"
#include "shell/TerminationSignals.h"

#include <QCoreApplication>
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

// SignalledProgram [busy]: ends by a signal, as the program does. With "busy" some work is under way until its standard
// input is closed. A thread of its own is there to take a signal that is not held back.
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
    const int result = QCoreApplication::exec();
    say("ended");
    return result;
}
