// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/OpenSslRandomSource.h"

#include <algorithm>
#include <utility>

namespace quillhaven::test {

/// A generator that always fails.
class FailingRandom : public OpenSslRandomSource
{
public:
    bool fill(std::span<std::byte>) override { return false; }
};

/// A generator that fails the first time and works afterwards.
class FailingOnceRandom : public OpenSslRandomSource
{
public:
    bool fill(std::span<std::byte> buffer) override
    {
        const bool isFirst = std::exchange(m_isFirst, false);
        return !isFirst && OpenSslRandomSource::fill(buffer);
    }

private:
    bool m_isFirst = true;
};

/// Generates the bytes 0, 1, 2 and so on.
class CountingRandom : public OpenSslRandomSource
{
public:
    bool fill(std::span<std::byte> buffer) override
    {
        std::ranges::generate(buffer, [this] { return static_cast<std::byte>(m_next++); });
        return true;
    }

private:
    unsigned char m_next = 0;
};

} // namespace quillhaven::test
