// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>

#include "platform/linux/session/ScreenSaverService.h"
#include "platform/linux/session/XScreenSaver.h"

#include <QPointer>
#include <QThreadPool>

#include <memory>
#include <vector>

namespace quillhaven {

class ScreenEvents;
class WatchedSources;

/// Posts that the screen saver has started: that of any desktop on the session bus, and where there is none, that of
/// the X server.
class ScreenSaverWatch : public QObject
{
    Q_OBJECT

public:
    /// The bus is null when the session has none.
    ScreenSaverWatch(const std::shared_ptr<BusConnection> &sessionBus, ScreenEvents &events, WatchedSources &watched);
    ~ScreenSaverWatch() override;

private:
    void addService(const std::shared_ptr<BusConnection> &sessionBus, const QString &title, const QString &name,
                    const QStringList &paths);
    /// Takes account of what is there now.
    void update();
    void connectXServer();
    [[nodiscard]] static QCoro::Task<> connectXServer(QPointer<ScreenSaverWatch> self);
    void setNone();
    void post();

    ScreenEvents &m_events;
    WatchedSources &m_watched;
    std::vector<std::unique_ptr<ScreenSaverService>> m_services;
    bool m_isXServerWanted = false;
    std::unique_ptr<XScreenSaver> m_xServer;
    QThreadPool m_connecting;
};

} // namespace quillhaven
