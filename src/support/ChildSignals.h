// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <spawn.h>

namespace quillhaven {

// What a program that this process starts must not inherit: signals that are ignored or blocked here would keep it from
// being ended. It gets a process group of its own, so that a key pressed in the terminal does not end it amid its work.

/// For QProcess::setChildProcessModifier.
void resetSignalsInChild();

/// For posix_spawn(3).
class SpawnAttributes
{
public:
    SpawnAttributes();
    ~SpawnAttributes();
    SpawnAttributes(const SpawnAttributes &) = delete;
    SpawnAttributes &operator=(const SpawnAttributes &) = delete;

    [[nodiscard]] const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

} // namespace quillhaven
