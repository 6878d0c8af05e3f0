// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/ScreenSaverWatch.h"

#include "async/Jobs.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/DisplayServer.h"
#include "platform/linux/session/ScreenEvents.h"

#include <algorithm>

namespace quillhaven {

namespace {

using Source = WatchedSources::Source;

/// "A is watched.", "A and b are watched.", "A, b and c are watched."
QString sentenceFor(QStringList titles)
{
    const QString last = titles.takeLast();
    QString sentence = titles.isEmpty()
                           ? QStringLiteral("%1 is watched.").arg(last)
                           : QStringLiteral("%1 and %2 are watched.").arg(titles.join(QStringLiteral(", ")), last);
    sentence[0] = sentence[0].toUpper();
    return sentence;
}

} // namespace

ScreenSaverWatch::ScreenSaverWatch(const std::shared_ptr<BusConnection> &sessionBus, ScreenEvents &events,
                                   WatchedSources &watched)
    : m_events(events), m_watched(watched)
{
    m_connecting.setMaxThreadCount(1);
    if (sessionBus) {
        addService(sessionBus, QStringLiteral("the desktop's screen saver"),
                   QStringLiteral("org.freedesktop.ScreenSaver"),
                   {QStringLiteral("/org/freedesktop/ScreenSaver"), QStringLiteral("/ScreenSaver")});
        addService(sessionBus, QStringLiteral("the screen saver of GNOME"), QStringLiteral("org.gnome.ScreenSaver"),
                   {QStringLiteral("/org/gnome/ScreenSaver")});
        addService(sessionBus, QStringLiteral("the screen saver of Cinnamon"),
                   QStringLiteral("org.cinnamon.ScreenSaver"), {QStringLiteral("/org/cinnamon/ScreenSaver")});
        addService(sessionBus, QStringLiteral("the screen saver of MATE"), QStringLiteral("org.mate.ScreenSaver"),
                   {QStringLiteral("/org/mate/ScreenSaver")});
        addService(sessionBus, QStringLiteral("the screen saver of Xfce"), QStringLiteral("org.xfce.ScreenSaver"),
                   {QStringLiteral("/org/xfce/ScreenSaver")});
    }
    update();
}

ScreenSaverWatch::~ScreenSaverWatch() = default;

void ScreenSaverWatch::addService(const std::shared_ptr<BusConnection> &sessionBus, const QString &title,
                                  const QString &name, const QStringList &paths)
{
    const auto &service = m_services.emplace_back(std::make_unique<ScreenSaverService>(sessionBus, title, name, paths));
    connect(service.get(), &ScreenSaverService::started, this, &ScreenSaverWatch::post);
    connect(service.get(), &ScreenSaverService::changed, this, &ScreenSaverWatch::update);
}

void ScreenSaverWatch::update()
{
    if (!std::ranges::all_of(m_services, &ScreenSaverService::isKnown)) {
        return;
    }
    QStringList titles;
    for (const auto &service : m_services) {
        if (service->isThere()) {
            titles << service->title();
        }
    }
    m_isXServerWanted = titles.isEmpty() && displayServer() == DisplayServer::X11;
    if (m_isXServerWanted) {
        connectXServer();
        return;
    }
    m_xServer.reset();
    if (titles.isEmpty()) {
        setNone();
        return;
    }
    m_watched.setState(Source::ScreenSaver, {.isAvailable = true, .sentence = sentenceFor(titles)});
}

void ScreenSaverWatch::connectXServer()
{
    if (!m_xServer) {
        startJob([self = QPointer(this)] { return connectXServer(self); });
    }
}

QCoro::Task<> ScreenSaverWatch::connectXServer(QPointer<ScreenSaverWatch> self)
{
    if (!self) {
        co_return;
    }
    std::unique_ptr<XConnection> server = co_await XScreenSaver::connectTo(self->m_connecting);
    if (!self || !self->m_isXServerWanted || self->m_xServer) {
        co_return;
    }
    if (!server) {
        self->setNone();
        co_return;
    }
    self->m_xServer = std::make_unique<XScreenSaver>(std::move(server));
    connect(self->m_xServer.get(), &XScreenSaver::started, self.data(), &ScreenSaverWatch::post);
    connect(self->m_xServer.get(), &XScreenSaver::lost, self.data(), &ScreenSaverWatch::setNone);
    self->m_watched.setState(
        Source::ScreenSaver,
        {.isAvailable = true, .sentence = QStringLiteral("The screen saver is watched through the X server.")});
}

void ScreenSaverWatch::setNone()
{
    m_watched.setState(
        Source::ScreenSaver,
        {.isAvailable = false,
         .sentence = QStringLiteral("A screen saver is not noticed: this desktop has no service that reports it.")});
}

void ScreenSaverWatch::post()
{
    m_events.post(notifications::screenSaverDidStart);
}

} // namespace quillhaven
