// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/PopoverWindow.h"

#include "presentation/HeldKeys.h"

#include "platform/Clock.h"
#include "presentation/SheetModels.h"
#include "presentation/popover/MenuBarViewModel.h"

#include <QCursor>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>

#include <algorithm>

namespace quillhaven {

std::unique_ptr<QQuickWindow> makePopoverWindow(QQmlEngine &engine, MenuBarViewModel &menuBar, SheetModels &sheets)
{
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/Quillhaven/PopoverScene.qml")));
    if (!component.isReady()) {
        qFatal("The popover could not be built: %s", qUtf8Printable(component.errorString()));
    }
    std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(
        component.createWithInitialProperties({{QStringLiteral("menuBarModel"), QVariant::fromValue(&menuBar)},
                                               {QStringLiteral("sheets"), QVariant::fromValue(&sheets)}})));
    ignoreHeldKeys(*window);
    return window;
}

QPoint popoverPosition(const QPoint &pointer, const QSize &size, const QRect &available)
{
    constexpr int gap = 8;
    const bool isBelow = pointer.y() < available.center().y();
    const int x = pointer.x() - size.width() / 2;
    const int y = isBelow ? pointer.y() + gap : pointer.y() - gap - size.height();
    const auto within = [](int value, int first, int length, int room) {
        return std::max(first + gap, std::min(value, first + room - length - gap));
    };
    return {within(x, available.x(), size.width(), available.width()),
            within(y, available.y(), size.height(), available.height())};
}

PopoverWindow::PopoverWindow(Clock &clock, Build build, QObject *parent)
    : Popover(parent), m_clock(clock), m_build(std::move(build))
{
}

PopoverWindow::~PopoverWindow() = default;

bool PopoverWindow::isShown() const
{
    return (m_window && m_window->isVisible()) || (m_lostFocusAt && m_clock.uptime() - *m_lostFocusAt < clickTime);
}

void PopoverWindow::build()
{
    m_window = m_build();
    connect(m_window.get(), &QWindow::activeChanged, this, &PopoverWindow::activeChanged);
    connect(m_window.get(), &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (isVisible) {
            Q_EMIT didShow();
        } else {
            Q_EMIT didClose();
        }
    });
}

void PopoverWindow::show()
{
    if (!m_window) {
        build();
    }
    m_wasActive = false;
    m_lostFocusAt.reset();
    place();
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void PopoverWindow::place()
{
    // A Wayland compositor places the window itself, and gives no position of the pointer outside a window.
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return;
    }
    const QPoint pointer = QCursor::pos();
    const QScreen *screen = QGuiApplication::screenAt(pointer);
    if (!screen) {
        screen = QGuiApplication::primaryScreen();
    }
    m_window->setPosition(popoverPosition(pointer, m_window->size(), screen->availableGeometry()));
}

void PopoverWindow::performClose()
{
    m_lostFocusAt.reset();
    if (m_window) {
        m_window->hide();
    }
}

void PopoverWindow::activeChanged()
{
    if (m_window->isActive()) {
        m_wasActive = true;
    } else if (m_wasActive && m_window->isVisible()) {
        m_lostFocusAt = m_clock.uptime();
        m_window->hide();
    }
}

} // namespace quillhaven
