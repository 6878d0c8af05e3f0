// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/login/AutostartLoginItem.h"

#include "async/OffMainThread.h"
#include "platform/WatchedSources.h"
#include "platform/linux/login/AutostartEntry.h"

namespace quillhaven {

namespace {

LoginItem::Status statusFor(AutostartState::Kind kind)
{
    switch (kind) {
    case AutostartState::Kind::Enabled:
        return LoginItem::Status::Enabled;
    case AutostartState::Kind::SwitchedOff:
    case AutostartState::Kind::ForOtherDesktop:
        return LoginItem::Status::RequiresApproval;
    case AutostartState::Kind::Unreadable:
        return LoginItem::Status::NotFound;
    case AutostartState::Kind::Missing:
    case AutostartState::Kind::CannotStart:
    case AutostartState::Kind::Foreign:
        break;
    }
    return LoginItem::Status::NotRegistered;
}

} // namespace

AutostartLoginItem::AutostartLoginItem(const AutostartFolders &folders, WatchedSources &watched)
    : m_folders(folders), m_watched(watched)
{
    m_queue.setMaxThreadCount(1);
}

AutostartLoginItem::~AutostartLoginItem()
{
    m_queue.waitForDone();
}

QCoro::Task<LoginItem::Status> AutostartLoginItem::status()
{
    const auto look = [folders = m_folders] { return autostartState(folders); };
    const AutostartState state = co_await offMainThread(m_queue, look);
    const bool isAvailable =
        state.kind != AutostartState::Kind::Foreign && state.kind != AutostartState::Kind::Unreadable;
    m_watched.setState(WatchedSources::Source::LaunchAtLogin, {isAvailable, state.sentence});
    co_return statusFor(state.kind);
}

QCoro::Task<> AutostartLoginItem::registerItem(QStringList arguments)
{
    const auto write = [folders = m_folders, arguments] { registerAutostart(folders, arguments); };
    co_await offMainThread(m_queue, write);
    co_await status();
}

QCoro::Task<> AutostartLoginItem::unregisterItem()
{
    const auto remove = [folders = m_folders] { unregisterAutostart(folders); };
    co_await offMainThread(m_queue, remove);
    co_await status();
}

} // namespace quillhaven
