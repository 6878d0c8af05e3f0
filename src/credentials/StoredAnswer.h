// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"

#include <memory>
#include <utility>

namespace quillhaven {

/// The answer that a dialog's stored actions give: each of them holds a copy of this. When all copies are destroyed
/// without an answer, because another question has replaced the actions, the answer is `replaced`.
template <typename T>
class StoredAnswer
{
public:
    explicit StoredAnswer(T replaced) : m_state(std::make_shared<State>(std::move(replaced))) {}

    /// The answer for the asking coroutine to await. It does not keep the actions alive.
    [[nodiscard]] Answer<T> answer() const { return m_state->answer; }
    void give(T value) const { m_state->answer.give(std::move(value)); }

private:
    struct State
    {
        explicit State(T value) : replaced(std::move(value)) {}
        ~State() { answer.give(std::move(replaced)); }
        State(const State &) = delete;
        State &operator=(const State &) = delete;

        Answer<T> answer;
        T replaced;
    };

    std::shared_ptr<State> m_state;
};

} // namespace quillhaven
