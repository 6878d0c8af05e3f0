// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one operation of the engine over a home folder and dies by SIGKILL right after its n-th change.
//
// interrupted_operation HOME OPERATION PATH N: the operation is protect, lock, unlock or remove. With N = 0 it runs to
// its end and prints each change, one name a line.

#include "support/OperationPlatform.h"

#include <csignal>
#include <cstdio>

#include <unistd.h>

using namespace quillhaven;
using namespace quillhaven::testing;

namespace {

void perform(EngineHarness &engine, const QString &operation, const QString &path)
{
    if (operation == QStringLiteral("protect")) {
        engine.protect(path);
    } else if (operation == QStringLiteral("lock")) {
        engine.lock();
    } else if (operation == QStringLiteral("unlock")) {
        engine.unlock();
    } else if (operation == QStringLiteral("remove")) {
        engine.remove();
    } else {
        throw std::runtime_error("unknown operation");
    }
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5) {
        return 2;
    }
    const int killAfter = arguments.at(4).toInt();
    std::atomic<int> changes = 0;
    std::atomic<bool> isCounting = false;
    SeamHooks hooks;
    hooks.after = [&](const char *call, const QString &) {
        if (!isCounting || qstrcmp(call, "readFile") == 0) {
            return;
        }
        if (killAfter == 0) {
            std::fprintf(stderr, "%s\n", call);
        }
        if (++changes == killAfter) {
            ::kill(::getpid(), SIGKILL);
        }
    };
    OperationPlatform services(directoriesBelow(arguments.at(1)), hooks);
    EngineHarness engine(services.platform());
    isCounting = true;
    try {
        perform(engine, arguments.at(2), arguments.at(3));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
        return 1;
    }
    return 0;
}
