// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/quillhavenApp.h"

#include "platform/ApplicationPresence.h"
#include "platform/Clock.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchContextManager.h"

namespace quillhaven {

using namespace std::chrono_literals;

quillhavenApp::quillhavenApp(LaunchContextManager &launchContext, ApplicationPresence &presence, Clock &clock,
                             std::function<void()> checkForPendingActions)
    : m_launchContext(launchContext),
      m_presence(presence),
      m_clock(clock),
      m_checkForPendingActions(std::move(checkForPendingActions))
{
}

quillhavenApp::~quillhavenApp() = default;

void quillhavenApp::contentAppeared()
{
    handleMainWindowAppearance();
    m_checks.push_back(m_clock.startRepeating(1000ms, [this] { checkForPendingActions(); }));
}

void quillhavenApp::mainWindowClosed()
{
    m_afterAppearance.reset();
}

void quillhavenApp::applicationDidBecomeActive()
{
    checkForPendingActions();
}

void quillhavenApp::handleMainWindowAppearance()
{
    checkForPendingActions();
    const bool shouldShow = m_launchContext.shouldShowMainWindow();
    m_afterAppearance = m_clock.startOneShot(100ms, [this, shouldShow] {
        if (shouldShow) {
            m_presence.makeKeyAndOrderFront(mainWindowTitle);
        } else {
            m_presence.hide();
        }
    });
}

void quillhavenApp::checkForPendingActions() const
{
    if (m_checkForPendingActions) {
        m_checkForPendingActions();
    }
}

} // namespace quillhaven
