// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

namespace quillhaven {

class BiometricAuthenticator;
class DialogModel;

/// Decides which of the program's windows shows a question: the active one, else any that is on the screen. If there is
/// none, the main window is brought forward, so that the user sees every question.
///
/// A question stays in its window while that window is on the screen. If the window is hidden, the question moves to
/// another one, unless it is in the main window: then it stays there.
class QuestionWindow : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Created in C++")
    Q_PROPERTY(QWindow *window READ window NOTIFY windowChanged)
    Q_PROPERTY(QWindow *mainWindow READ mainWindow NOTIFY mainWindowChanged)

public:
    /// `bringMainWindowForward` shows the main window, for whatever reason it is hidden, and builds it if there is
    /// none.
    explicit QuestionWindow(std::function<void()> bringMainWindowForward, QObject *parent = nullptr);

    /// The window that shows the questions, or showed the last one. Null while there is none.
    [[nodiscard]] QWindow *window() const { return m_window; }
    [[nodiscard]] QWindow *mainWindow() const { return m_mainWindow; }

    /// Lets a window show questions, for as long as it lives.
    Q_INVOKABLE void add(QWindow *window);
    /// The same for the main window, which may be built later than others.
    Q_INVOKABLE void addMain(QWindow *window);
    /// Finds a window for each question of this dialog. The reference must outlive this object.
    void follow(const DialogModel &dialog);
    /// The same for the prompt of the fingerprint reader.
    void follow(const BiometricAuthenticator &biometrics);

Q_SIGNALS:
    void windowChanged();
    void mainWindowChanged();

private:
    using IsOpen = std::function<bool()>;

    /// Finds the window for a question that is being asked.
    void place(size_t question);
    void leaveHidden(const QWindow *window);
    void moveOn();
    [[nodiscard]] QWindow *findWindow() const;
    void setWindow(QWindow *window);

    std::function<void()> m_bringMainWindowForward;
    QList<QPointer<QWindow>> m_windows;
    QPointer<QWindow> m_mainWindow;
    std::vector<IsOpen> m_questions;
    QPointer<QWindow> m_window;
};

} // namespace quillhaven
