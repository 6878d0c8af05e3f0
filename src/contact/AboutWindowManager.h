// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>

namespace quillhaven {

/// Holds the window about the program. Nothing creates one at present: "About" brings the main window forward. Main
/// thread only.
class AboutWindowManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QWindow *aboutWindow READ aboutWindow WRITE setAboutWindow NOTIFY aboutWindowChanged)

public:
    using QObject::QObject;

    /// Null when there is none, also after the window was deleted.
    [[nodiscard]] QWindow *aboutWindow() const { return m_aboutWindow; }
    /// Does not take the window over.
    void setAboutWindow(QWindow *window);

Q_SIGNALS:
    void aboutWindowChanged();

private:
    QPointer<QWindow> m_aboutWindow;
};

} // namespace quillhaven
