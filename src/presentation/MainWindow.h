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
    /// Builds the window, hidden, as the main one among those that show sheets. The references outlive this object.
    /// Ends the program with a message when the window cannot be built, which only a broken build can cause.
    MainWindow(QQmlEngine &engine, DashboardViewModel &dashboard, SheetModels &sheets, QObject *parent = nullptr);
    ~MainWindow() override;

    void show();
    void hide();
    [[nodiscard]] bool isVisible() const;
    [[nodiscard]] QQuickWindow *window() const { return m_window; }

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The window came to the screen; again after each hiding.
    void contentAppeared();
    /// The user asked to close the window. It stays on the screen: the receiver decides what follows. The window
    /// refuses every close event, those of `QCoreApplication::quit` included; `QCoreApplication::exit` ends the
    /// program.
    void closeRequested();

private:
    QQuickWindow *m_window = nullptr;
};

} // namespace quillhaven
