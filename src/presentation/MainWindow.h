// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

QT_BEGIN_NAMESPACE
class QQmlEngine;
class QQuickWindow;
QT_END_NAMESPACE

namespace quillhaven {

class DashboardViewModel;
class SheetModels;

/// The main window, titled `mainWindowTitle`. It is built hidden; closing it never destroys it.
class MainWindow : public QObject
{
    Q_OBJECT

public:
    /// Creates the window, hidden, as the main one of the windows that show sheets. The references must outlive this
    /// object. Aborts the program with a message if the window cannot be created, which only a broken build can cause.
    MainWindow(QQmlEngine &engine, DashboardViewModel &dashboard, SheetModels &sheets, QObject *parent = nullptr);
    ~MainWindow() override;

    void show();
    void hide();
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] QQuickWindow *window() const { return m_window; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The window came onto the screen: for the first time, or again after it was hidden.
    void contentAppeared();
    /// The user asked to close the window. It stays open: the receiver decides what to do. The window refuses every
    /// close event, including those sent by `QCoreApplication::quit`; use `QCoreApplication::exit` to end the program.
    void closeRequested();
    /// The user asked to end the program.
    void quitRequested();

private:
    void noticeAppearance();

    QQuickWindow *m_window = nullptr;
    bool m_hasAppeared = false; ///< since it was hidden
};

} // namespace quillhaven
