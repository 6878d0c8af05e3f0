// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/session/DesktopDisplayPreferences.h"

#include "async/Jobs.h"

#include <QDBusArgument>
#include <QDBusVariant>

namespace quillhaven {

namespace {

constexpr std::chrono::seconds answerLimit(2);
constexpr std::chrono::seconds readLimit(30); ///< a portal that was just started first starts those of the desktop

const QString portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// Starts the service that has the name, if there is one; its owner is reported when it has come.
void startService(QDBusConnection &connection, const QString &name)
{
    const QString bus = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage start = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                                        QStringLiteral("StartServiceByName"));
    start.setArguments({name, 0U});
    connection.send(start);
}

} // namespace

DesktopDisplayPreferences::DesktopDisplayPreferences()
{
    m_connecting.setMaxThreadCount(1);
    startJob([self = QPointer(this)] { return findPortal(self); });
}

DesktopDisplayPreferences::~DesktopDisplayPreferences() = default;

QCoro::Task<> DesktopDisplayPreferences::findPortal(QPointer<DesktopDisplayPreferences> self)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus =
        co_await BusConnection::open(self->m_connecting, MessageBus::Session, answerLimit);
    if (!self || !bus) {
        co_return;
    }
    self->m_portal = std::make_unique<BusNameOwner>(bus, portalName);
    connect(self->m_portal.get(), &BusNameOwner::ownerChanged, self.data(), &DesktopDisplayPreferences::onOwnerChanged);
    startService(bus->connection(), portalName);
}

void DesktopDisplayPreferences::onOwnerChanged(const QString &owner)
{
    const QString signal = QStringLiteral("SettingChanged");
    const char *slot = SLOT(onSettingChanged(QDBusMessage));
    QDBusConnection &connection = m_portal->bus()->connection();
    if (!m_owner.isEmpty()) {
        connection.disconnect(m_owner, portalPath, settingsInterface, signal, this, slot);
    }
    m_owner = owner;
    if (!m_owner.isEmpty()) {
        connection.connect(m_owner, portalPath, settingsInterface, signal, this, slot);
        m_changed = {};
        startJob([self = QPointer(this), owner] { return readAll(self, owner); });
    }
}

QCoro::Task<> DesktopDisplayPreferences::readAll(QPointer<DesktopDisplayPreferences> self, QString owner)
{
    if (!self) {
        co_return;
    }
    const std::shared_ptr<BusConnection> bus = self->m_portal->bus();
    // Every version of the interface has this method, unlike those that read a single setting.
    QDBusMessage question =
        QDBusMessage::createMethodCall(owner, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    question.setArguments({DisplaySettings::namespaces()});
    const QDBusMessage reply = co_await BusConnection::call(bus, question, readLimit);
    if (!self || self->m_owner != owner || reply.type() != QDBusMessage::ReplyMessage ||
        reply.signature() != QLatin1String("a{sa{sv}}")) {
        co_return;
    }
    const auto spaces = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    DisplaySettings settings;
    for (auto space = spaces.cbegin(); space != spaces.cend(); ++space) {
        for (auto setting = space->cbegin(); setting != space->cend(); ++setting) {
            settings.set(space.key(), setting.key(), setting.value());
        }
    }
    // A change that was reported meanwhile is newer than the reply.
    settings.add(self->m_changed);
    self->m_settings = settings;
    self->setValues(settings.values());
}

void DesktopDisplayPreferences::onSettingChanged(const QDBusMessage &message)
{
    if (message.signature() != QLatin1String("ssv")) {
        return;
    }
    const QString space = message.arguments().at(0).toString();
    const QString key = message.arguments().at(1).toString();
    const QVariant value = message.arguments().at(2).value<QDBusVariant>().variant();
    m_changed.set(space, key, value);
    m_settings.set(space, key, value);
    setValues(m_settings.values());
}

} // namespace quillhaven
