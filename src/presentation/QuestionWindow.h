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

/// Decides which of the program's windows shows a question: the active one, else one that is on the screen. When none
/// is, the main window is brought forward, so that no question is asked unseen.
///
/// A question stays where it appeared while that window is on the screen; from another window than the main one that
/// is hidden it moves on. A main window that the user hides keeps it.
class QuestionWindow : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program")
    Q_PROPERTY(QWindow *window READ window NOTIFY windowChanged)
    Q_PROPERTY(QWindow *mainWindow READ mainWindow NOTIFY mainWindowChanged)

public:
    /// `bringMainWindowForward` shows the main window, whatever has hidden it.
    explicit QuestionWindow(std::function<void()> bringMainWindowForward, QObject *parent = nullptr);

    /// Where questions show; the main window before the first one. Null while there is no window.
    [[nodiscard]] QWindow *window() const { return m_window; }
    /// The first window that was added.
    [[nodiscard]] QWindow *mainWindow() const { return m_windows.value(0); }

    /// Lets a window show questions, for as long as it lives.
    Q_INVOKABLE void add(QWindow *window);
    /// Finds a window for each question of this dialog. The reference outlives this object.
    void follow(const DialogModel &dialog);
    /// The same for the prompt of the fingerprint reader.
    void follow(const BiometricAuthenticator &biometrics);

Q_SIGNALS:
    void windowChanged();
    void mainWindowChanged();

private:
    using IsOpen = std::function<bool()>;

    /// Finds the window for a question that is put now.
    void place(size_t question);
    void leaveHidden(const QWindow *window);
    void moveOn();
    [[nodiscard]] QWindow *findWindow() const;
    void setWindow(QWindow *window);

    std::function<void()> m_bringMainWindowForward;
    QList<QPointer<QWindow>> m_windows; ///< the main one first
    std::vector<IsOpen> m_questions;
    QPointer<QWindow> m_window;
};

} // namespace quillhaven
