// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtApplicationPresence.h"

#include "async/WorkInFlight.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace quillhaven {

namespace {

bool hasVisibleDialog()
{
    const QList<QWindow *> windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWindow *window) { return window->isVisible() && window->type() == Qt::Dialog; });
}

} // namespace

void QtApplicationPresence::activate()
{
    // A dialog has the keyboard, not the window that waits for it.
    const Qt::WindowType wanted = hasVisibleDialog() ? Qt::Dialog : Qt::Window;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->type() == wanted) {
            window->raise();
            window->requestActivate();
        }
    }
}

void QtApplicationPresence::hide()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->transientParent()) {
            m_hiddenDialogs.append(window);
        }
    }
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
        showDialogsAgain();
        if (!hasVisibleDialog()) {
            window->requestActivate();
        }
        return true;
    }
    return false;
}

void QtApplicationPresence::showDialogsAgain()
{
    // A panel that stays hidden could never be answered.
    for (const QPointer<QWindow> &dialog : std::exchange(m_hiddenDialogs, {})) {
        if (dialog) {
            dialog->setVisible(true);
            dialog->requestActivate();
        }
    }
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
    WorkInFlight::close([] { QCoreApplication::exit(0); });
}

} // namespace quillhaven
