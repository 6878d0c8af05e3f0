// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/MainWindow.h"

#include "credentials/MasterPasswordDialogManager.h"
#include "credentials/PasswordInputDialogModel.h"
#include "credentials/PasswordInputDialogManager.h"
#include "platform/BiometricAuthenticator.h"
#include "presentation/dashboard/DashboardViewModel.h"
#include "presentation/dialogs/ConfirmationDialogManager.h"
#include "presentation/dialogs/ProtectionMethodDialogManager.h"
#include "presentation/tokens/Design.h"

#include <QEvent>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>

namespace quillhaven {

namespace {

/// The style counts for the whole process, and Qt takes it only before the first control.
void chooseStyle()
{
    static const bool isChosen = [] {
        QQuickStyle::setStyle(QStringLiteral("Basic"));
        return true;
    }();
    Q_UNUSED(isChosen)
}

QVariantMap initialProperties(const MainWindowModels &models)
{
    return {{QStringLiteral("dashboard"), QVariant::fromValue(&models.dashboard)},
            {QStringLiteral("confirmationDialogManager"), QVariant::fromValue(&models.confirmation)},
            {QStringLiteral("protectionMethodDialogManager"), QVariant::fromValue(&models.protectionMethod)},
            {QStringLiteral("passwordInputDialogManager"), QVariant::fromValue(&models.passwordInput)},
            {QStringLiteral("passwordInputState"), QVariant::fromValue(&models.passwordInputState)},
            {QStringLiteral("masterPasswordDialogManager"), QVariant::fromValue(&models.masterPassword)},
            {QStringLiteral("biometrics"), QVariant::fromValue(&models.biometrics)}};
}

} // namespace

MainWindow::MainWindow(const MainWindowModels &models, QObject *parent) : QObject(parent)
{
    chooseStyle();
    m_engine = std::make_unique<QQmlApplicationEngine>();
    installDesign(*m_engine);
    m_engine->setInitialProperties(initialProperties(models));
    m_engine->load(QUrl(QStringLiteral("qrc:/Quillhaven/Main.qml")));
    if (!m_engine->rootObjects().isEmpty()) {
        m_window = qobject_cast<QQuickWindow *>(m_engine->rootObjects().constFirst());
    }
    if (!m_window) {
        qFatal("The main window could not be built.");
    }
    m_window->installEventFilter(this);
    connect(m_window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (isVisible) {
            Q_EMIT contentAppeared();
        }
    });
}

MainWindow::~MainWindow()
{
    // Its bindings look at the engine's singletons until the end.
    delete m_window;
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
