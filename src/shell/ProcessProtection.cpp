// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/ProcessProtection.h"

#include <QByteArray>

#include <sys/prctl.h>
#include <sys/resource.h>

#include <csignal>

namespace quillhaven {

namespace {

bool isSanitized()
{
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return true;
#else
    return false;
#endif
}

} // namespace

void protectProcess()
{
    std::signal(SIGPIPE, SIG_IGN);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    if (!isSanitized() && !qgetenv("QT_QPA_PLATFORMTHEME").contains("xdgdesktopportal")) {
        ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    }
}

} // namespace quillhaven
