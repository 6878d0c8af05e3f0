// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/widgets/QtApplicationPresence.h"

#include "async/WorkInFlight.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <utility>

namespace quillhaven {

void QtApplicationPresence::activate()
{
    if (!m_mainWindow) {
        return;
    }
    // A dialog has the keyboard, not the window that waits for it.
    QList<QWindow *> windows = visibleDialogs();
    if (windows.isEmpty() && m_mainWindow->isVisible()) {
        windows.append(m_mainWindow);
    }
    for (QWindow *window : windows) {
        window->raise();
        window->requestActivate();
    }
}

void QtApplicationPresence::hide()
{
    if (!m_mainWindow) {
        return;
    }
    for (QWindow *dialog : visibleDialogs()) {
        m_hiddenDialogs.append(dialog);
        dialog->hide();
    }
    m_mainWindow->hide();
}

bool QtApplicationPresence::buildMainWindow()
{
    if (!m_mainWindow && m_build) {
        m_mainWindow = m_build();
    }
    return m_mainWindow;
}

void QtApplicationPresence::minimize()
{
    if (buildMainWindow()) {
        m_mainWindow->showMinimized();
    }
}

bool QtApplicationPresence::makeKeyAndOrderFront(const QString &title)
{
    if (!buildMainWindow() || m_mainWindow->title() != title) {
        return false;
    }
    m_mainWindow->setWindowStates(m_mainWindow->windowStates() & ~Qt::WindowMinimized);
    m_mainWindow->setVisible(true);
    m_mainWindow->raise();
    showDialogsAgain();
    if (visibleDialogs().isEmpty()) {
        m_mainWindow->requestActivate();
    }
    return true;
}

QList<QWindow *> QtApplicationPresence::visibleDialogs() const
{
    QList<QWindow *> dialogs;
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && m_mainWindow->isAncestorOf(window, QWindow::IncludeTransients)) {
            dialogs.append(window);
        }
    }
    return dialogs;
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
    return !windowsOnScreen().isEmpty();
}

bool QtApplicationPresence::isInFront() const
{
    return std::ranges::any_of(windowsOnScreen(), &QWindow::isActive);
}

QList<QWindow *> QtApplicationPresence::windowsOnScreen() const
{
    if (!m_mainWindow) {
        return {};
    }
    QList<QWindow *> windows = visibleDialogs() << m_mainWindow;
    windows.removeIf(
        [](const QWindow *window) { return !window->isVisible() || (window->windowStates() & Qt::WindowMinimized); });
    return windows;
}

void QtApplicationPresence::terminate()
{
    // Not `quit`: it asks every window to close first, and the main window refuses.
    WorkInFlight::close([] { QCoreApplication::exit(0); });
}

} // namespace quillhaven
