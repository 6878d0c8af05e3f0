// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <unistd.h>

#include <utility>

namespace quillhaven {

/// Owns a file descriptor. It may be given the -1 of a failed open, and leaves errno alone then.
class ScopedFd
{
public:
    ScopedFd() = default;
    explicit ScopedFd(int fd) : m_fd(fd) {}
    ~ScopedFd()
    {
        if (m_fd >= 0) {
            ::close(m_fd);
        }
    }
    ScopedFd(ScopedFd &&other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    ScopedFd &operator=(ScopedFd &&other) noexcept
    {
        std::swap(m_fd, other.m_fd);
        return *this;
    }
    ScopedFd(const ScopedFd &) = delete;
    ScopedFd &operator=(const ScopedFd &) = delete;

    [[nodiscard]] int get() const { return m_fd; }
    [[nodiscard]] bool isOpen() const { return m_fd >= 0; }
    /// Hands the descriptor to the caller.
    [[nodiscard]] int release() { return std::exchange(m_fd, -1); }

private:
    int m_fd = -1;
};

} // namespace quillhaven
