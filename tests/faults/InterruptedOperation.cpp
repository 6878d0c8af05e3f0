// SPDX-License-Identifier: GPL-3.0-or-later

// Runs one operation of the engine on a prepared home folder, and can kill itself with SIGKILL meanwhile.
//
//   interrupted_operation HOME OPERATION change N   kills itself after its n-th change; uses the session's credentials
//   interrupted_operation HOME OPERATION call N     kills itself instead of its n-th file system call
//
// With N = 0 it runs to the end and prints each change, one per line, or the number of calls.

#include "faults/HomePlatform.h"
#include "support/printLogger.h"

#include <csignal>
#include <cstdio>

#include <unistd.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

/// Ends this program after its n-th change.
class EndAfterChange
{
public:
    explicit EndAfterChange(int n) : m_n(n)
    {
        hooks.after = [this](const char *call, const QString &) { count(call); };
    }

    SeamHooks hooks;
    std::atomic<bool> isCounting = false;

private:
    void count(const char *call)
    {
        if (!isCounting || qstrcmp(call, "readFile") == 0) {
            return;
        }
        if (m_n == 0) {
            std::printf("%s\n", call);
        }
        if (++m_changes == m_n) {
            ::kill(::getpid(), SIGKILL);
        }
    }

    int m_n;
    std::atomic<int> m_changes = 0;
};

/// Marks this point for a program that traces the system calls.
void mark(const char *moment)
{
    (void)::access(moment, F_OK);
}

void perform(Platform platform, const QString &home, const QString &operation, const std::function<void()> &start)
{
    EngineHarness engine(platform);
    engine.masterPasswordEntry = operationMasterPassword;
    start();
    mark("/the operation begins here");
    operationNamed(operation).perform({engine, home});
    mark("/the operation ends here");
}

void endAfterChange(const QString &home, const QString &operation, int n)
{
    EndAfterChange end(n);
    HomePlatform services(home, HomePlatform::Credentials::OfTheSession, end.hooks);
    perform(services.platform(), home, operation, [&end] { end.isCounting = true; });
}

void endAtCall(const QString &home, const QString &operation, int n)
{
    HomePlatform services(home);
    perform(services.platform(), home, operation,
            [n] { n == 0 ? system_call_faults::countOnly() : system_call_faults::killAtCall(n); });
    system_call_faults::disarm();
    std::printf("%d\n", system_call_faults::callCount());
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5) {
        return 2;
    }
    setLogSink([](const QString &) {});
    const auto end = arguments.at(3) == QStringLiteral("change") ? endAfterChange : endAtCall;
    try {
        end(arguments.at(1), arguments.at(2), arguments.at(4).toInt());
    } catch (const std::exception &error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
        return 1;
    }
    return 0;
}
