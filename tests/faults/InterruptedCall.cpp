// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one operation of the engine over a home folder that is prepared for it, and dies by SIGKILL in place of its n-th
// file system call.
//
// interrupted_call HOME OPERATION N: with N = 0 it runs to its end and prints the number of calls.

#include "faults/HomePlatform.h"
#include "faults/Operations.h"
#include "support/printLogger.h"

#include <cstdio>

using namespace quillhaven;
using namespace quillhaven::testing;

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    setLogSink([](const QString &) {});
    HomePlatform services(arguments.at(1));
    EngineHarness engine(services.platform());
    Operations operations(engine, arguments.at(1));
    engine.masterPasswordEntry = Operations::masterPassword;
    const int n = arguments.at(3).toInt();
    if (n == 0) {
        system_call_faults::countOnly();
    } else {
        system_call_faults::killAtCall(n);
    }
    try {
        operations.perform(arguments.at(2));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
        return 1;
    }
    std::printf("%d\n", system_call_faults::callCount());
    return 0;
}
