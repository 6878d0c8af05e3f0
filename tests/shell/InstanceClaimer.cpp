// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/SingleInstance.h"
#include "support/LocalizedError.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <unistd.h>

namespace {

void say(const QString &line)
{
    std::printf("%s\n", qUtf8Printable(line));
    std::fflush(stdout);
}

} // namespace

// InstanceClaimer DIRECTORY FALLBACK [ARGUMENT...]: a process of the program. It prints its role; the primary then
// prints what it receives. At a line on its standard input it announces its end, and it ends when the input is closed.
int main(int argc, char **argv)
{
    using namespace quillhaven;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        SingleInstance instance(arguments.at(1), arguments.at(2));
        if (instance.claim(arguments.mid(2)) == SingleInstance::Role::Secondary) {
            say(QStringLiteral("secondary"));
            return 0;
        }
        QObject::connect(&instance, &SingleInstance::activationRequested, [] { say(QStringLiteral("activate")); });
        QObject::connect(&instance, &SingleInstance::openRequested,
                         [](const QStringList &urls) { say(QStringLiteral("open ") + urls.join(QLatin1Char(' '))); });
        QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&input, &QSocketNotifier::activated, [&instance] {
            char line[16];
            if (::read(STDIN_FILENO, line, sizeof line) > 0) {
                instance.announceEnd();
                say(QStringLiteral("ending"));
            } else {
                QCoreApplication::exit(0);
            }
        });
        say(QStringLiteral("primary"));
        return QCoreApplication::exec();
    } catch (const LocalizedError &error) {
        say(QStringLiteral("error ") + error.errorDescription());
        return 1;
    }
}
