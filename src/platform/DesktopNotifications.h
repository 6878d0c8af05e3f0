// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <functional>

namespace quillhaven {

/// The desktop's short messages, which the user sees while the program has no window. Main thread only.
class DesktopNotifications
{
public:
    struct Message
    {
        QString title;
        QString text; ///< plain text
        /// A later message of the same topic takes the place of an earlier one.
        QString topic;
        /// Called when the user clicks the message, unless this object is gone.
        std::function<void()> onActivated;
    };

    DesktopNotifications() = default;
    virtual ~DesktopNotifications() = default;
    DesktopNotifications(const DesktopNotifications &) = delete;
    DesktopNotifications &operator=(const DesktopNotifications &) = delete;

    /// Shows the message, soon; nothing happens on a desktop that shows none.
    virtual void show(const Message &message) = 0;
};

} // namespace quillhaven
