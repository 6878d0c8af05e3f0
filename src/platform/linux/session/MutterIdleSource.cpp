// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/MutterIdleSource.h"

#include "async/Answer.h"
#include "async/Jobs.h"

#include <utility>

namespace quillhaven {

namespace {

const QString monitorInterface = QStringLiteral("org.gnome.Mutter.IdleMonitor");
const QString monitorPath = QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core");

} // namespace

QCoro::Task<std::unique_ptr<BusNameOwner>> MutterIdleSource::find(std::shared_ptr<BusConnection> bus)
{
    std::unique_ptr<BusNameOwner> monitor;
    if (bus) {
        monitor = std::make_unique<BusNameOwner>(bus, monitorInterface);
        const Answer<bool> isThere;
        connect(monitor.get(), &BusNameOwner::ownerChanged, monitor.get(),
                [isThere](const QString &owner) { isThere.give(!owner.isEmpty()); });
        static_cast<void>(co_await isThere);
        if (monitor->owner()->isEmpty()) {
            monitor.reset();
        }
    }
    co_return monitor;
}

MutterIdleSource::MutterIdleSource(std::unique_ptr<BusNameOwner> monitor, Clock &clock,
                                   std::chrono::milliseconds period)
    : IdleBasedSource(clock, period), m_monitor(std::move(monitor))
{
    m_monitor->bus()->connection().connect(*m_monitor->owner(), monitorPath, monitorInterface,
                                           QStringLiteral("WatchFired"), this, SLOT(onWatchFired(uint)));
    connect(m_monitor.get(), &BusNameOwner::ownerChanged, this, &GlobalInputSource::lost);
    addLater(QStringLiteral("AddIdleWatch"), {static_cast<qulonglong>(period.count())}, &MutterIdleSource::m_idleWatch);
    start();
}

MutterIdleSource::~MutterIdleSource() = default;

QString MutterIdleSource::sentence() const
{
    return QStringLiteral("Keyboard and pointer are watched through GNOME's idle monitor.");
}

void MutterIdleSource::addLater(const QString &method, const QVariantList &arguments, uint MutterIdleSource::*watch)
{
    startJob([=, self = QPointer(this)] { return add(self, method, arguments, watch); });
}

QCoro::Task<> MutterIdleSource::add(QPointer<MutterIdleSource> self, QString method, QVariantList arguments,
                                    uint MutterIdleSource::*watch)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus = self->m_monitor->bus();
    QDBusMessage message =
        QDBusMessage::createMethodCall(*self->m_monitor->owner(), monitorPath, monitorInterface, method);
    message.setArguments(arguments);
    self->m_isAdding = true;
    const QDBusMessage reply = co_await BusConnection::call(bus, message);
    if (!self) {
        co_return;
    }
    if (reply.type() != QDBusMessage::ReplyMessage) {
        Q_EMIT self->lost();
        co_return;
    }
    self->m_isAdding = false;
    self.data()->*watch = reply.arguments().value(0).toUInt();
    for (const uint id : std::exchange(self->m_early, {})) {
        self->onWatchFired(id);
    }
}

void MutterIdleSource::onWatchFired(uint id)
{
    if (id == m_idleWatch) {
        userBecameIdle();
        addLater(QStringLiteral("AddUserActiveWatch"), {}, &MutterIdleSource::m_activeWatch);
    } else if (id == m_activeWatch) {
        m_activeWatch = 0;
        userReturned();
    } else if (m_isAdding) {
        m_early.push_back(id);
    }
}

} // namespace quillhaven
