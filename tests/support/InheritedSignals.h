// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <csignal>

namespace quillhaven::test {

/// Ignores and blocks a signal in this thread; a program that it starts inherits both unless that is prevented.
class InheritedSignal
{
public:
    explicit InheritedSignal(int number) : m_number(number), m_handler(std::signal(number, SIG_IGN))
    {
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, number);
        pthread_sigmask(SIG_BLOCK, &one, &m_mask);
    }
    ~InheritedSignal()
    {
        std::signal(m_number, m_handler);
        pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
    }
    InheritedSignal(const InheritedSignal &) = delete;
    InheritedSignal &operator=(const InheritedSignal &) = delete;

private:
    int m_number;
    void (*m_handler)(int);
    sigset_t m_mask{};
};

} // namespace quillhaven::test
