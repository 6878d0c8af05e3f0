// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/MainThread.h"

#include <coroutine>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace quillhaven {

/// A value that comes later, once: coroutines await it, and the code that has it gives it. The handles are cheap copies
/// of one another, so that stored actions may hold one each; the first give counts and later ones are ignored. Each
/// awaiting coroutine gets a copy of the value and goes on from the main event loop, in the order in which they began
/// to wait and never inside the call that gave. Main thread only.
///
/// An answer that is never given leaves its coroutines suspended, with whatever they hold.
template <typename T>
class Answer
{
public:
    Answer() : m_state(std::make_shared<State>()) {}

    /// True when this call decided the answer.
    bool give(T value) const
    {
        if (isGiven()) {
            return false;
        }
        m_state->value.emplace(std::move(value));
        for (const std::coroutine_handle<> waiting : std::exchange(m_state->waiting, {})) {
            resumeOnMainThread(waiting);
        }
        return true;
    }

    [[nodiscard]] bool isGiven() const { return m_state->value.has_value(); }

    [[nodiscard]] bool await_ready() const noexcept { return isGiven(); }
    void await_suspend(std::coroutine_handle<> waiting) const { m_state->waiting.push_back(waiting); }
    [[nodiscard]] T await_resume() const { return *m_state->value; }

private:
    struct State
    {
        std::optional<T> value;
        std::vector<std::coroutine_handle<>> waiting;
    };

    std::shared_ptr<State> m_state;
};

} // namespace quillhaven
