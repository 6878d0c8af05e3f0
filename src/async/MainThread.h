// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include <coroutine>
#include <functional>
#include <memory>
#include <utility>

namespace quillhaven {

/// Calls `action` from the main event loop, in the order of the posts. Any thread may call it.
void postToMainThread(std::function<void()> action);

/// Resumes a suspended coroutine in the same way. Every coroutine that waits for an answer or for a piece of work goes
/// on through here, so that none is resumed inside an object that it could destroy. Once the end of the process is
/// decided, it stays suspended.
void resumeOnMainThread(std::coroutine_handle<> waiting);

/// A form of `function` that a worker may call: each call posts one to the main event loop.
template <typename... Arguments>
[[nodiscard]] std::function<void(Arguments...)> onMainThread(std::function<void(Arguments...)> function)
{
    auto kept = std::make_shared<std::function<void(Arguments...)>>(std::move(function));
    return [kept](Arguments... arguments) { postToMainThread([kept, arguments...] { (*kept)(arguments...); }); };
}

} // namespace quillhaven
