// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <cstddef>
#include <span>

namespace quillhaven {

/// Random bytes fit for keys, and identifiers made of them. Any thread may call it.
class RandomSource
{
public:
    RandomSource() = default;
    virtual ~RandomSource() = default;
    RandomSource(const RandomSource &) = delete;
    RandomSource &operator=(const RandomSource &) = delete;

    /// Fills the buffer. False when the generator failed; the buffer is then as it was.
    virtual bool fill(std::span<std::byte> buffer) = 0;
    /// A fresh random UUID (RFC 4122, version 4) as upper-case hyphenated text.
    [[nodiscard]] virtual QString uuidString() = 0;
};

} // namespace quillhaven
