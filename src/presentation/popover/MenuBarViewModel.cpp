// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/popover/MenuBarViewModel.h"

#include "async/Jobs.h"
#include "credentials/MasterPasswordManager.h"
#include "engine/QuillhavenManager.h"
#include "platform/ApplicationPresence.h"
#include "platform/Clock.h"
#include "platform/NotificationCenter.h"
#include "shell/AppDelegate.h"
#include "shell/LaunchContextManager.h"
#include "support/LocalizedError.h"

#include <algorithm>

namespace quillhaven {

using namespace std::chrono_literals;

MenuBarViewModel::MenuBarViewModel(MenuBarContext context, QObject *parent)
    : QObject(parent), m_context(std::move(context)), m_items(m_context.quillhavenManager.catalogue())
{
    connect(&m_items, &MenuBarItemsModel::itemsChanged, this, &MenuBarViewModel::itemsChanged);
}

MenuBarViewModel::~MenuBarViewModel() = default;

qsizetype MenuBarViewModel::activeCount() const
{
    return std::ranges::count(m_items.items(), true, &ProtectedItem::isMounted);
}

QString MenuBarViewModel::countText() const
{
    return QString::number(m_items.items().size()) + QStringLiteral(" items");
}

QString MenuBarViewModel::activeText() const
{
    return QString::number(activeCount()) + QStringLiteral(" Active");
}

QString MenuBarViewModel::securedText() const
{
    return QString::number(m_items.items().size() - activeCount()) + QStringLiteral(" Secured");
}

void MenuBarViewModel::onToggleLock(int row)
{
    const ProtectedItem item = m_items.items().value(row);
    if (!item.id.isEmpty()) {
        startJob([this, item] { return toggleLock(item); });
    }
}

QCoro::Task<> MenuBarViewModel::toggleLock(ProtectedItem item)
{
    if (!co_await m_context.masterPasswordManager.requireAuthenticationOrCancel()) {
        co_return;
    }
    try {
        if (item.isMounted) {
            co_await m_context.quillhavenManager.lockItem(item);
        } else {
            co_await m_context.quillhavenManager.unlockItem(item);
        }
    } catch (...) {
        showError(std::current_exception());
    }
}

void MenuBarViewModel::showError(const std::exception_ptr &failure)
{
    m_errorMessage = localizedDescription(failure);
    m_errorDialogManager.showErrorWithAutoTroubleshooting(m_errorMessage, QStringLiteral("Error"));
}

void MenuBarViewModel::bringMainWindowForward()
{
    Q_EMIT mainWindowWanted();
    m_context.launchContext.setShouldShowMainWindow(true);
    m_context.presence.activate();
    after(100ms, [this] { m_context.presence.makeKeyAndOrderFront(mainWindowTitle); });
}

void MenuBarViewModel::showPreferences()
{
    bringMainWindowForward();
    after(200ms, [this] { m_context.notifications.post(notifications::showPreferences); });
}

void MenuBarViewModel::after(std::chrono::milliseconds delay, std::function<void()> action)
{
    const auto entry = m_timers.insert(m_timers.end(), nullptr);
    *entry = m_context.clock.startOneShot(delay, [this, entry, action = std::move(action)] {
        action();
        m_timers.erase(entry);
    });
}

std::vector<StatusItem::MenuEntry> MenuBarViewModel::menuEntries()
{
    return {{QStringLiteral("Open"), [this] { bringMainWindowForward(); }},
            {QStringLiteral("Lock All"), m_context.lockAll},
            {QStringLiteral("Preferences"), [this] { showPreferences(); }},
            {QStringLiteral("Quit"), [this] { quit(); }}};
}

} // namespace quillhaven
