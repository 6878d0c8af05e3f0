// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace quillhaven {

/// How the process shows itself on the desktop. Main thread only.
class ApplicationPresence
{
public:
    enum class ActivationPolicy {
        Regular,   ///< an ordinary application with windows in the task list
        Accessory, ///< in the background, without an entry in the task list
    };

    ApplicationPresence() = default;
    virtual ~ApplicationPresence() = default;
    ApplicationPresence(const ApplicationPresence &) = delete;
    ApplicationPresence &operator=(const ApplicationPresence &) = delete;

    [[nodiscard]] virtual ActivationPolicy activationPolicy() const = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Brings the application to the foreground, in front of the others.
    virtual void activate() = 0;
    /// Hides all its windows.
    virtual void hide() = 0;
    /// Shows the first window of exactly this title in front and gives it the keyboard. False when there is none.
    virtual bool makeKeyAndOrderFront(const QString &title) = 0;
    /// Whether one of its windows is on the screen.
    [[nodiscard]] virtual bool hasVisibleWindows() const = 0;
    /// Asks the event loop to end, as soon as no file work runs.
    virtual void terminate() = 0;
};

} // namespace quillhaven
