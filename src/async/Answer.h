// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QMetaObject>

#include <coroutine>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace quillhaven {

/// A value that comes later, once: a coroutine awaits it, and the code that has it gives it. The handles are cheap
/// copies of one another, so that stored actions may hold one each; the first give counts and later ones are ignored.
/// The awaiting coroutine goes on from the main event loop, never inside the call that gave. Main thread only.
///
/// An answer that is never given leaves its coroutine suspended, with whatever it holds.
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
        resumeLater();
        return true;
    }

    /// Ends the waiting with an exception.
    bool fail(std::exception_ptr error) const
    {
        if (isGiven()) {
            return false;
        }
        m_state->error = std::move(error);
        resumeLater();
        return true;
    }

    [[nodiscard]] bool isGiven() const { return m_state->value.has_value() || m_state->error; }

    [[nodiscard]] bool await_ready() const noexcept { return isGiven(); }
    void await_suspend(std::coroutine_handle<> waiting) const noexcept { m_state->waiting = waiting; }
    [[nodiscard]] T await_resume() const
    {
        if (m_state->error) {
            std::rethrow_exception(m_state->error);
        }
        return std::move(*m_state->value);
    }

private:
    struct State
    {
        std::optional<T> value;
        std::exception_ptr error;
        std::coroutine_handle<> waiting;
    };

    void resumeLater() const
    {
        if (!m_state->waiting) {
            return;
        }
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [state = m_state] { state->waiting.resume(); }, Qt::QueuedConnection);
    }

    std::shared_ptr<State> m_state;
};

} // namespace quillhaven
