// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/Answer.h"

#include <memory>
#include <utility>

namespace quillhaven {

/// The answer that a dialog's stored actions give: each of them holds a copy of this. Once all of them are gone, since
/// another question has taken their place, nobody can answer any more, and the answer is `replaced`.
template <typename T>
class StoredAnswer
{
public:
    explicit StoredAnswer(T replaced) : m_state(std::make_shared<State>(std::move(replaced))) {}

    /// What the asking coroutine awaits. It keeps no action alive.
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
