// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ChildSignals.h"

#include <csignal>

#include <unistd.h>

namespace quillhaven {

void resetSignalsInChild()
{
    for (int number = 1; number < NSIG; ++number) {
        std::signal(number, SIG_DFL); // not possible for some, and not necessary either
    }
    sigset_t none;
    sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
    ::setpgid(0, 0);
}

SpawnAttributes::SpawnAttributes()
{
    sigset_t signals;
    posix_spawnattr_init(&m_attributes);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&m_attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&m_attributes, &signals);
    posix_spawnattr_setpgroup(&m_attributes, 0);
    posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
}

SpawnAttributes::~SpawnAttributes()
{
    posix_spawnattr_destroy(&m_attributes);
}

} // namespace quillhaven
