// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <cstddef>
#include <span>

namespace quillhaven {

/// Watches a file come into memory. Called on the reading thread.
class ReadListener
{
public:
    ReadListener() = default;
    virtual ~ReadListener() = default;
    ReadListener(const ReadListener &) = delete;
    ReadListener &operator=(const ReadListener &) = delete;

    /// The memory that the reading fills, with its headroom and tailroom. It may begin anew after `abandoned`.
    virtual void began(std::span<std::byte> buffer) = 0;
    /// The first `count` bytes of the file stand in the buffer. The reading does not touch them again.
    virtual void arrived(size_t count) = 0;
    /// The memory goes away: nothing may touch it once this has returned.
    virtual void abandoned() = 0;
};

/// For those who only want what was read.
class NoReadListener final : public ReadListener
{
public:
    void began(std::span<std::byte> /*buffer*/) override {}
    void arrived(size_t /*count*/) override {}
    void abandoned() override {}
};

} // namespace quillhaven
