// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/AppDelegate.h"

#include "platform/ApplicationPresence.h"
#include "platform/Popover.h"
#include "shell/LaunchContextManager.h"
#include "support/printLogger.h"

namespace quillhaven {

AppDelegate::AppDelegate(ApplicationPresence &presence, LaunchSequence sequence, std::optional<MenuBar> menuBar,
                         QObject *parent)
    : QObject(parent), m_presence(presence), m_sequence(std::move(sequence)), m_menuBar(std::move(menuBar))
{
    if (m_menuBar) {
        m_sequence.launch[LaunchPhase::setupMenuBar] = [this] { setupMenuBar(); };
        m_sequence.termination[TerminationPhase::cleanupMenuBar] = [this] { cleanupMenuBar(); };
    }
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    m_launchContext = &m_sequence.launchContext();
    for (const auto &[phase, step] : m_sequence.launch) {
        step();
    }
    handleLaunchContextInitialization();
}

void AppDelegate::setupMenuBar()
{
    m_statusItem = m_menuBar->statusBar.makeStatusItem();
    m_statusItem->setTemplateImage(QStringLiteral("menubarIcon"));
    m_statusItem->setToolTip(mainWindowTitle);
    m_statusItem->setAction([this] { toggleMenu(); });
    setupPopover();
    m_statusItem->setMenu(m_menuBar->menuEntries());
}

void AppDelegate::setupPopover()
{
    m_popover = m_menuBar->makePopover();
    connect(m_popover.get(), &Popover::didShow, this, &AppDelegate::popoverDidShow);
    connect(m_popover.get(), &Popover::didClose, this, &AppDelegate::popoverDidClose);
}

void AppDelegate::toggleMenu()
{
    if (!m_statusItem || !m_popover) {
        return;
    }
    if (m_popover->isShown()) {
        m_popover->performClose();
        return;
    }
    if (m_presence.activationPolicy() != ApplicationPresence::ActivationPolicy::Regular) {
        m_presence.setActivationPolicy(ApplicationPresence::ActivationPolicy::Regular);
    }
    m_popover->show();
}

void AppDelegate::cleanupMenuBar()
{
    if (m_popover) {
        m_popover->performClose();
        m_popover.reset();
    }
    m_statusItem.reset();
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
