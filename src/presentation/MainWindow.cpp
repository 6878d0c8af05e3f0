// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/MainWindow.h"

#include "presentation/HeldKeys.h"
#include "presentation/SheetModels.h"
#include "presentation/dashboard/DashboardViewModel.h"

#include <QEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

namespace quillhaven {

MainWindow::MainWindow(QQmlEngine &engine, DashboardViewModel &dashboard, SheetModels &sheets, QObject *parent)
    : QObject(parent)
{
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/Quillhaven/Main.qml")));
    if (!component.isReady()) {
        qFatal("The main window could not be built: %s", qUtf8Printable(component.errorString()));
    }
    m_window = qobject_cast<QQuickWindow *>(
        component.createWithInitialProperties({{QStringLiteral("dashboard"), QVariant::fromValue(&dashboard)},
                                               {QStringLiteral("sheets"), QVariant::fromValue(&sheets)}}));
    Q_ASSERT(m_window);
    m_window->installEventFilter(this);
    ignoreHeldKeys(*m_window);
    connect(m_window, &QWindow::visibleChanged, this, &MainWindow::noticeAppearance);
    connect(m_window, &QWindow::windowStateChanged, this, &MainWindow::noticeAppearance);
    connect(m_window, SIGNAL(quitRequested()), this, SIGNAL(quitRequested()));
}

MainWindow::~MainWindow()
{
    delete m_window;
}

void MainWindow::noticeAppearance()
{
    if (!m_window->isVisible()) {
        m_hasAppeared = false;
    } else if (!m_hasAppeared && !(m_window->windowStates() & Qt::WindowMinimized)) {
        m_hasAppeared = true;
        Q_EMIT contentAppeared();
    }
}

void MainWindow::show()
{
    m_window->show();
    m_window->raise();
    m_window->requestActivate();
}

void MainWindow::hide()
{
    m_window->hide();
}

bool MainWindow::isVisible() const
{
    return m_window->isVisible();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::Close) {
        event->ignore();
        Q_EMIT closeRequested();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quillhaven
