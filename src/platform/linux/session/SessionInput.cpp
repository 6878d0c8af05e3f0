// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/SessionInput.h"

#include "async/Jobs.h"
#include "async/MainThread.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/DisplayServer.h"
#include "platform/linux/session/IdleNotifySource.h"
#include "platform/linux/session/MutterIdleSource.h"
#include "platform/linux/session/XInputSource.h"

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(2);

QString whyAbsent(DisplayServer server)
{
    switch (server) {
    case DisplayServer::X11:
        return QStringLiteral("the X server does not have XInput 2.2");
    case DisplayServer::Wayland:
        return QStringLiteral("this Wayland desktop does not report when you are idle");
    case DisplayServer::None:
        break;
    }
    return QStringLiteral("there is no X server or Wayland desktop");
}

} // namespace

/// What a monitor wants, and where it gets it from. Its monitor owns it.
struct SessionInput::Watch
{
    InputEvents events;
    UserInput::Handler handler;
    std::unique_ptr<GlobalInputSource> source; ///< null until it is connected, and after the desktop has ended it
};

class SessionInput::SourceMonitor : public UserInput::Monitor
{
public:
    explicit SourceMonitor(std::shared_ptr<Watch> watch) : m_watch(std::move(watch)) {}

private:
    std::shared_ptr<Watch> m_watch;
};

SessionInput::SessionInput(Clock &clock, WatchedSources &watched, std::chrono::milliseconds period)
    : m_clock(clock), m_watched(watched), m_period(period)
{
    m_connecting.setMaxThreadCount(1);
    if (displayServer() == DisplayServer::None) {
        setUnavailable(whyAbsent(DisplayServer::None));
    }
}

SessionInput::~SessionInput() = default;

std::unique_ptr<UserInput::Monitor> SessionInput::addMonitor(InputEvents events, UserInput::Handler handler)
{
    if (m_isAbsent) {
        return nullptr;
    }
    const auto watch = std::make_shared<Watch>(Watch{.events = events, .handler = std::move(handler), .source = {}});
    startJob([self = QPointer(this), weak = std::weak_ptr(watch)] { return connectSource(self, weak); });
    return std::make_unique<SourceMonitor>(watch);
}

QCoro::Task<> SessionInput::connectSource(QPointer<SessionInput> self, std::weak_ptr<Watch> watch)
{
    const DisplayServer server = displayServer();
    std::unique_ptr<GlobalInputSource> source;
    if (const auto wanted = watch.lock(); wanted && self) {
        const InputEvents events = wanted->events;
        source = server == DisplayServer::X11 ? co_await openForX11(self, events) : co_await openForWayland(self);
    }
    const auto stillWanted = watch.lock();
    if (!self || !stillWanted) {
        co_return;
    }
    if (source) {
        self->begin(stillWanted, std::move(source));
    } else {
        self->setUnavailable(whyAbsent(server));
    }
}

QCoro::Task<std::unique_ptr<GlobalInputSource>> SessionInput::openForX11(QPointer<SessionInput> self,
                                                                         InputEvents events)
{
    std::unique_ptr<GlobalInputSource> source;
    std::unique_ptr<XConnection> display = co_await XInputSource::connectTo(self->m_connecting);
    if (self && display) {
        source = std::make_unique<XInputSource>(std::move(display), self->m_clock, events, self->m_period);
    }
    co_return source;
}

QCoro::Task<std::unique_ptr<GlobalInputSource>> SessionInput::openForWayland(QPointer<SessionInput> self)
{
    std::unique_ptr<GlobalInputSource> source;
    const std::shared_ptr<WaylandConnection> compositor = WaylandConnection::open();
    if (!compositor) {
        co_return source;
    }
    const bool hasNotifications = co_await IdleNotifySource::isOffered(compositor);
    if (self && hasNotifications) {
        source = std::make_unique<IdleNotifySource>(compositor, self->m_clock, self->m_period);
    } else if (self) {
        const std::shared_ptr<BusConnection> bus =
            co_await BusConnection::open(self->m_connecting, MessageBus::Session, answerLimit);
        std::unique_ptr<BusNameOwner> monitor = co_await MutterIdleSource::find(bus);
        if (self && monitor) {
            source = std::make_unique<MutterIdleSource>(std::move(monitor), self->m_clock, self->m_period);
        }
    }
    co_return source;
}

void SessionInput::setUnavailable(const QString &reason)
{
    m_isAbsent = true;
    m_watched.setState(
        WatchedSources::Source::Input,
        {.isAvailable = false,
         .sentence = QStringLiteral("Only input to Quillhaven's own windows is noticed: %1.").arg(reason)});
}

void SessionInput::begin(const std::shared_ptr<Watch> &watch, std::unique_ptr<GlobalInputSource> source)
{
    // Posted, since what they do may destroy the monitor, and with it the source that reports.
    const std::weak_ptr<Watch> weak = watch;
    connect(source.get(), &GlobalInputSource::inputSeen, source.get(), [weak] {
        postToMainThread([weak] {
            if (const auto kept = weak.lock()) {
                kept->handler();
            }
        });
    });
    connect(source.get(), &GlobalInputSource::lost, source.get(), [weak, self = QPointer(this)] {
        postToMainThread([weak, self] {
            if (const auto kept = weak.lock()) {
                kept->source.reset();
            }
            if (self) {
                self->setUnavailable(QStringLiteral("the desktop has ended its reports of other input"));
            }
        });
    });
    m_watched.setState(WatchedSources::Source::Input, {.isAvailable = true, .sentence = source->sentence()});
    watch->source = std::move(source);
}

} // namespace quillhaven
