// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/LaunchContextManager.h"

#include "platform/ApplicationPresence.h"

#include <algorithm>

namespace quillhaven {

QString description(LaunchContext context)
{
    switch (context) {
    case LaunchContext::userActivation:
        return QStringLiteral("userActivation");
    case LaunchContext::loginItem:
        return QStringLiteral("loginItem");
    case LaunchContext::systemRestart:
        return QStringLiteral("systemRestart");
    case LaunchContext::unknown:
        break;
    }
    return QStringLiteral("unknown");
}

LaunchContextManager::LaunchContextManager(const QStringList &arguments, ApplicationPresence &presence, QObject *parent)
    : QObject(parent),
      m_presence(presence),
      m_currentContext(hasLoginItemArguments(arguments) ? LaunchContext::loginItem : LaunchContext::userActivation)
{
    configureLaunchBehavior();
}

bool LaunchContextManager::hasLoginItemArguments(const QStringList &arguments)
{
    const QStringList loginArguments{QStringLiteral("-psn_"), QStringLiteral("--login-item"),
                                     QStringLiteral("-loginItem")};
    return std::ranges::any_of(loginArguments,
                               [&arguments](const QString &argument) { return arguments.contains(argument); });
}

void LaunchContextManager::configureLaunchBehavior()
{
    m_shouldStartInBackground = m_currentContext != LaunchContext::userActivation;
    Q_EMIT shouldStartInBackgroundChanged();
    setShouldShowMainWindow(m_currentContext == LaunchContext::userActivation);
}

void LaunchContextManager::setShouldShowMainWindow(bool value)
{
    if (m_shouldShowMainWindow != value) {
        m_shouldShowMainWindow = value;
        Q_EMIT shouldShowMainWindowChanged();
    }
}

void LaunchContextManager::showMainWindow()
{
    setShouldShowMainWindow(true);
    m_presence.activate();
}

void LaunchContextManager::hideMainWindow()
{
    setShouldShowMainWindow(false);
    m_presence.hide();
}

void LaunchContextManager::updateContext(LaunchContext context)
{
    m_currentContext = context;
    Q_EMIT currentContextChanged();
    configureLaunchBehavior();
}

QString LaunchContextManager::contextDescription() const
{
    switch (m_currentContext) {
    case LaunchContext::userActivation:
        return QStringLiteral("User Activation");
    case LaunchContext::loginItem:
        return QStringLiteral("Login Item");
    case LaunchContext::systemRestart:
        return QStringLiteral("System Restart");
    case LaunchContext::unknown:
        break;
    }
    return QStringLiteral("Unknown");
}

} // namespace quillhaven
