// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QFlags>

#include <functional>
#include <memory>

namespace quillhaven {

/// Kinds of input.
enum class InputEvent {
    LeftMouseDown = 1 << 1,
    RightMouseDown = 1 << 3,
    MouseMoved = 1 << 5, ///< without a button held
    KeyDown = 1 << 10,
};
Q_DECLARE_FLAGS(InputEvents, InputEvent)
Q_DECLARE_OPERATORS_FOR_FLAGS(InputEvents)

/// Reports that the user does something, and nothing of what it is. Main thread only.
class UserInput
{
public:
    /// Watches for as long as it lives.
    class Monitor
    {
    public:
        Monitor() = default;
        virtual ~Monitor() = default;
        Monitor(const Monitor &) = delete;
        Monitor &operator=(const Monitor &) = delete;
    };
    using Handler = std::function<void()>;

    UserInput() = default;
    virtual ~UserInput() = default;
    UserInput(const UserInput &) = delete;
    UserInput &operator=(const UserInput &) = delete;

    /// Calls the handler at such input anywhere in the session, at once when there was none in the 10 seconds before,
    /// and at least once in 10 seconds while there is input. Null when the desktop offers no way to watch it.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addGlobalMonitor(InputEvents events, Handler handler) = 0;
    /// Calls the handler at each such input to this program's windows, and lets the input pass.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addLocalMonitor(InputEvents events, Handler handler) = 0;
};

} // namespace quillhaven
