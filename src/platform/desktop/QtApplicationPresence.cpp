#include "platform/desktop/QtApplicationPresence.h"

#include "platform/WorkInFlight.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>

namespace quillhaven {

void QtApplicationPresence::activate()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->type() == Qt::Window) {
            window->raise();
            window->requestActivate();
        }
    }
}

void QtApplicationPresence::hide()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        window->hide();
    }
}

bool QtApplicationPresence::makeKeyAndOrderFront(const QString &title)
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->title() != title) {
            continue;
        }
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
        window->setVisible(true);
        window->raise();
        window->requestActivate();
        return true;
    }
    return false;
}

bool QtApplicationPresence::hasVisibleWindows() const
{
    const QList<QWindow *> windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [](const QWindow *window) {
        return window->isVisible() && !(window->windowStates() & Qt::WindowMinimized);
    });
}

void QtApplicationPresence::terminate()
{
    // Not `quit`: it asks every window to close first, and the main window keeps itself.
    WorkInFlight::whenIdle([] { QCoreApplication::exit(0); });
}

} // namespace quillhaven
