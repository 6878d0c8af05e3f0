// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/LoginItem.h"
#include "platform/linux/login/AutostartFolders.h"

#include <QThreadPool>

namespace quillhaven {

class WatchedSources;

/// The login item as an autostart entry, which every desktop reads. The files are read and written off the main thread,
/// one operation at a time in the order of the calls.
class AutostartLoginItem : public LoginItem
{
public:
    /// Keeps the entry `LaunchAtLogin` of `watched` up to date, which must outlive this object.
    AutostartLoginItem(const AutostartFolders &folders, WatchedSources &watched);
    ~AutostartLoginItem() override;

    [[nodiscard]] QCoro::Task<Status> status() override;
    [[nodiscard]] QCoro::Task<> registerItem(QStringList arguments) override;
    [[nodiscard]] QCoro::Task<> unregisterItem() override;

private:
    AutostartFolders m_folders;
    WatchedSources &m_watched;
    QThreadPool m_queue;
};

} // namespace quillhaven
