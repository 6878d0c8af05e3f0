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
    /// Brings the main window, when it is on the screen, in front of other applications: the dialog that it waits for,
    /// if there is one.
    virtual void activate() = 0;
    /// Hides the main window and its dialogs.
    virtual void hide() = 0;
    /// Takes the main window from the screen into the task list, where the user finds it, also when it is hidden.
    virtual void minimize() = 0;
    /// Shows the main window in front and gives it the keyboard, with the dialogs that were hidden with it. Builds the
    /// window first if there is none yet. False when its title is not exactly this one.
    virtual bool makeKeyAndOrderFront(const QString &title) = 0;
    /// Whether the main window or one of its dialogs is on the screen.
    [[nodiscard]] virtual bool hasVisibleWindows() const = 0;
    /// Asks for the end of the program: no job starts any more, and the event loop ends as soon as no file work runs.
    virtual void terminate() = 0;
};

} // namespace quillhaven
