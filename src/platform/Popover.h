// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

namespace quillhaven {

/// A small panel at the status item, which closes by itself when the user turns to something else. Main thread only.
class Popover : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Whether the user sees it as shown: also for a moment after it has closed by itself, since the click that took
    /// the focus from it may have been one on the status item, which is then meant to close it.
    [[nodiscard]] virtual bool isShown() const = 0;
    /// Shows it in front, at the status item where the desktop lets a program place its windows, and gives it the
    /// keyboard.
    virtual void show() = 0;
    virtual void performClose() = 0;

Q_SIGNALS:
    void didShow();
    void didClose();
};

} // namespace quillhaven
