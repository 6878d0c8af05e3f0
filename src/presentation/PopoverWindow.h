// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/Popover.h"

#include <QPoint>
#include <QRect>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

QT_BEGIN_NAMESPACE
class QQmlEngine;
class QQuickWindow;
QT_END_NAMESPACE

namespace quillhaven {

class Clock;
class MenuBarViewModel;
class SheetModels;

/// Creates the window of the popover, hidden. Aborts the program with a message if it cannot be created, which only a
/// broken build can cause. The references must outlive the window.
[[nodiscard]] std::unique_ptr<QQuickWindow> makePopoverWindow(QQmlEngine &engine, MenuBarViewModel &menuBar,
                                                              SheetModels &sheets);

/// Where a popover of this size goes when the pointer is on the status item: below it in the upper half of the screen,
/// above it in the lower half, and inside the part of the screen that panels leave.
[[nodiscard]] QPoint popoverPosition(const QPoint &pointer, const QSize &size, const QRect &available);

/// A popover whose window is built when it is first shown. It closes when it loses the keyboard focus.
class PopoverWindow : public Popover
{
    Q_OBJECT

public:
    using Build = std::function<std::unique_ptr<QQuickWindow>()>;

    /// How long the click that took the focus may still arrive as one on the status item.
    static constexpr std::chrono::milliseconds clickTime{200};

    /// The clock must outlive this object.
    PopoverWindow(Clock &clock, Build build, QObject *parent = nullptr);
    ~PopoverWindow() override;

    [[nodiscard]] bool isShown() const override;
    void show() override;
    void performClose() override;

    /// Null until it has been shown.
    [[nodiscard]] QQuickWindow *window() const { return m_window.get(); }

private:
    void build();
    void place();
    void activeChanged();

    Clock &m_clock;
    Build m_build;
    std::unique_ptr<QQuickWindow> m_window;
    bool m_wasActive = false; ///< since it was shown
    std::optional<std::chrono::nanoseconds> m_lostFocusAt;
};

} // namespace quillhaven
