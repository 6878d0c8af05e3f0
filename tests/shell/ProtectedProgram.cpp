// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/ProcessProtection.h"
#include "support/printLogger.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include <cstdio>

// ProtectedProgram: protects itself as the program does, says in its error output whether its memory can be read by
// others and how large a memory image may be, and logs a line. After the end of its standard input it logs another one.
int main()
{
    using namespace quillhaven;
    protectProcess();
    rlimit core{};
    getrlimit(RLIMIT_CORE, &core);
    std::fprintf(stderr, "dumpable %d, core %llu\n", prctl(PR_GET_DUMPABLE, 0, 0, 0, 0),
                 static_cast<unsigned long long>(core.rlim_cur));
    printLogger(QStringLiteral("first"));
    while (std::getchar() != EOF) {
    }
    printLogger(QStringLiteral("second"));
    std::fputs("ended\n", stderr);
    return 0;
}
