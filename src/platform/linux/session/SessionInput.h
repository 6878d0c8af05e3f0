// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Before the standard library's coroutines, whose concepts moc cannot read otherwise.
#include <QObject>
#include <QPointer>
#include <QThreadPool>

#include "platform/GlobalInput.h"
#include "platform/linux/session/GlobalInputSource.h"

#include <QCoroTask>

#include <memory>

namespace quillhaven {

class Clock;
class WatchedSources;

/// Input to any program of the session: on X11 by XInput 2, on Wayland by the compositor's idle notifications or else
/// by Mutter's idle monitor. Without a monitor there is no connection to any of them. What is found is entered as the
/// watched source of input.
class SessionInput : public QObject, public GlobalInput
{
    Q_OBJECT

public:
    SessionInput(Clock &clock, WatchedSources &watched,
                 std::chrono::milliseconds period = GlobalInputSource::defaultPeriod);
    ~SessionInput() override;

    [[nodiscard]] std::unique_ptr<UserInput::Monitor> addMonitor(InputEvents events,
                                                                 UserInput::Handler handler) override;

private:
    struct Watch;
    class SourceMonitor;

    /// Connects to what the desktop offers, and keeps it in `watch`.
    [[nodiscard]] static QCoro::Task<> connectSource(QPointer<SessionInput> self, std::weak_ptr<Watch> watch);
    /// Null when the display server does not offer it.
    [[nodiscard]] static QCoro::Task<std::unique_ptr<GlobalInputSource>> openForX11(QPointer<SessionInput> self,
                                                                                    InputEvents events);
    [[nodiscard]] static QCoro::Task<std::unique_ptr<GlobalInputSource>> openForWayland(QPointer<SessionInput> self);
    void setUnavailable(const QString &reason);
    void begin(const std::shared_ptr<Watch> &watch, std::unique_ptr<GlobalInputSource> source);

    Clock &m_clock;
    WatchedSources &m_watched;
    std::chrono::milliseconds m_period;
    bool m_isAbsent = false; ///< the desktop was asked, and offers nothing
    QThreadPool m_connecting;
};

} // namespace quillhaven
