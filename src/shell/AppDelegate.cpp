// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/AppDelegate.h"

#include "platform/ApplicationPresence.h"
#include "shell/LaunchContextManager.h"
#include "support/printLogger.h"

namespace quillhaven {

AppDelegate::AppDelegate(ApplicationPresence &presence, LaunchSequence sequence, QObject *parent)
    : QObject(parent), m_presence(presence), m_sequence(std::move(sequence))
{
}

void AppDelegate::applicationDidFinishLaunching()
{
    m_launchContext = &m_sequence.launchContext();
    for (const auto &[phase, step] : m_sequence.launch) {
        step();
    }
    handleLaunchContextInitialization();
}

void AppDelegate::handleLaunchContextInitialization()
{
    if (!m_launchContext) {
        return;
    }
    if (m_launchContext->shouldStartInBackground()) {
        initializeForBackgroundLaunch();
        return;
    }
    m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    printLogger(QStringLiteral("App launched by user activation"));
}

void AppDelegate::initializeForBackgroundLaunch()
{
    m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Accessory);
    m_presence.hide();
    printLogger(QStringLiteral("App launched in background mode (login item)"));
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    if (hasVisibleWindows) {
        return true;
    }
    if (m_launchContext) {
        m_launchContext->setShouldShowMainWindow(true);
        m_presence.activate();
    }
    showMainWindow();
    return true;
}

void AppDelegate::reopen()
{
    applicationShouldHandleReopen(m_presence.hasVisibleWindows());
    m_presence.activate();
}

void AppDelegate::showMainWindow()
{
    if (m_presence.activationPolicy() != ApplicationPresence::ActivationPolicy::Regular) {
        m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    }
    m_presence.makeKeyAndOrderFront(mainWindowTitle);
    m_presence.activate();
}

void AppDelegate::applicationWillTerminate()
{
    for (const auto &[phase, step] : m_sequence.termination) {
        step();
    }
    m_launchContext = nullptr;
}

} // namespace quillhaven
