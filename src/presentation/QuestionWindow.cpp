// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/QuestionWindow.h"

#include "credentials/DialogModel.h"
#include "platform/BiometricAuthenticator.h"

#include <QGuiApplication>

#include <algorithm>

namespace quillhaven {

namespace {

bool isOnScreen(const QWindow *window)
{
    return window && window->isVisible() && !(window->windowStates() & Qt::WindowMinimized);
}

} // namespace

QuestionWindow::QuestionWindow(std::function<void()> bringMainWindowForward, QObject *parent)
    : QObject(parent), m_bringMainWindowForward(std::move(bringMainWindowForward))
{
}

void QuestionWindow::add(QWindow *window)
{
    if (!window || m_windows.contains(window)) {
        return;
    }
    m_windows.append(window);
    connect(window, &QWindow::visibleChanged, this, [this, window] { leaveHidden(window); });
    connect(window, &QObject::destroyed, this, [this] { m_windows.removeAll(nullptr); });
    if (!m_window) {
        setWindow(window);
    }
}

void QuestionWindow::addMain(QWindow *window)
{
    m_mainWindow = window;
    Q_EMIT mainWindowChanged();
    add(window);
}

void QuestionWindow::follow(const DialogModel &dialog)
{
    const size_t question = m_questions.size();
    m_questions.emplace_back([&dialog] { return dialog.isPresented(); });
    connect(&dialog, &DialogModel::asked, this, [this, question] { place(question); });
}

void QuestionWindow::follow(const BiometricAuthenticator &biometrics)
{
    const size_t question = m_questions.size();
    m_questions.emplace_back([&biometrics] { return biometrics.isPrompting(); });
    connect(&biometrics, &BiometricAuthenticator::promptChanged, this,
            [this, question, &biometrics, wasPrompting = false]() mutable {
                const bool hasBegun = biometrics.isPrompting() && !wasPrompting;
                wasPrompting = biometrics.isPrompting();
                if (hasBegun) {
                    place(question);
                }
            });
}

void QuestionWindow::place(size_t question)
{
    bool isAnotherOpen = false;
    for (size_t other = 0; other < m_questions.size(); ++other) {
        isAnotherOpen = isAnotherOpen || (other != question && m_questions[other]());
    }
    // While another question is open, this one is shown on top of it, in the same window.
    if (!isAnotherOpen || !isOnScreen(m_window)) {
        moveOn();
    } else if (QWindow *focused = QGuiApplication::focusWindow(); focused != m_window && m_windows.contains(focused)) {
        m_window->requestActivate(); // the question was asked in another window of the program
    }
}

void QuestionWindow::leaveHidden(const QWindow *window)
{
    const bool isOpen = std::ranges::any_of(m_questions, [](const IsOpen &each) { return each(); });
    if (isOpen && window == m_window && window != mainWindow() && !isOnScreen(window)) {
        moveOn();
    }
}

void QuestionWindow::moveOn()
{
    QWindow *found = findWindow();
    if (!found) {
        m_bringMainWindowForward();
        found = mainWindow();
    }
    setWindow(found);
}

QWindow *QuestionWindow::findWindow() const
{
    // A panel or a menu belongs to the window that opened it.
    for (QWindow *window = QGuiApplication::focusWindow(); window; window = window->transientParent()) {
        if (m_windows.contains(window) && isOnScreen(window)) {
            return window;
        }
    }
    const auto found = std::ranges::find_if(m_windows, [](QWindow *window) { return isOnScreen(window); });
    return found == m_windows.end() ? nullptr : found->data();
}

void QuestionWindow::setWindow(QWindow *window)
{
    if (m_window != window) {
        m_window = window;
        Q_EMIT windowChanged();
    }
}

} // namespace quillhaven
