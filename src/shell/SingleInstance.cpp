// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/SingleInstance.h"

#include "platform/linux/session/BusConnection.h"
#include "shell/LaunchContextManager.h"
#include "support/printLogger.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QUrl>
#include <QVariantMap>

#include <utility>

namespace quillhaven {

namespace {

constexpr int answerTimeoutMs = 2000;
constexpr int endTimeoutMs = 60000;
constexpr unsigned long retryIntervalMs = 10;

/// The interface by which desktops start and address an application (Desktop Entry Specification, D-Bus activation).
class ApplicationAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(SingleInstance *instance) : QDBusAbstractAdaptor(instance), m_instance(instance) {}

public Q_SLOTS:
    void Activate(const QVariantMap &) { Q_EMIT m_instance->activationRequested(); }
    void Open(const QStringList &uris, const QVariantMap &) { Q_EMIT m_instance->openRequested(uris); }
    void ActivateAction(const QString &, const QVariantList &, const QVariantMap &)
    {
        Q_EMIT m_instance->activationRequested();
    }

private:
    SingleInstance *m_instance;
};

QDBusMessage busCall(const QStringList &urls)
{
    const QString method = urls.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open");
    QDBusMessage call = QDBusMessage::createMethodCall(SingleInstance::busName, SingleInstance::objectPath,
                                                       QStringLiteral("org.freedesktop.Application"), method);
    if (!urls.isEmpty()) {
        call << urls;
    }
    call << QVariantMap();
    return call;
}

bool hasBus()
{
    return hasSessionBus() && QDBusConnection::sessionBus().isConnected();
}

} // namespace

SingleInstance::SingleInstance(const QString &directory, const QString &fallback, QObject *parent)
    : QObject(parent), m_directory(directory), m_lock(directory, fallback)
{
}

SingleInstance::~SingleInstance() = default;

QStringList SingleInstance::urlsIn(const QStringList &arguments)
{
    QStringList urls;
    for (const QString &argument : arguments.mid(1)) {
        if (argument.contains(QStringLiteral("://")) && QUrl(argument).isValid()) {
            urls.append(argument);
        }
    }
    return urls;
}

QString SingleInstance::socketPath() const
{
    return m_directory + QStringLiteral("/quillhaven.socket");
}

SingleInstance::Role SingleInstance::claim(const QStringList &arguments)
{
    const QStringList urls = urlsIn(arguments);
    const bool isSilent = urls.isEmpty() && LaunchContextManager::hasLoginItemArguments(arguments);
    QElapsedTimer waiting;
    waiting.start();
    while (!m_lock.take()) {
        const bool isEnding = m_lock.isEnding();
        QString reason;
        if (!isEnding && (isSilent || handOver(urls, reason) == HandOver::Delivered)) {
            return Role::Secondary;
        }
        if (waiting.hasExpired(isEnding ? endTimeoutMs : answerTimeoutMs)) {
            printLogger(QStringLiteral("⚠️ Quillhaven is already running, but it does not answer: ") + reason);
            return Role::Secondary;
        }
        // The holder of the lock is not listening yet, or is ending.
        QThread::msleep(retryIntervalMs);
    }
    becomeReachable();
    return Role::Primary;
}

void SingleInstance::becomeReachable()
{
    QLocalServer::removeServer(socketPath()); // The lock was free, so nobody listens there.
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::acceptHandOver);
    if (!m_server->listen(socketPath())) {
        printLogger(QStringLiteral("⚠️ Cannot listen for later starts: ") + m_server->errorString());
    }
    if (!hasBus()) {
        return;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    new ApplicationAdaptor(this);
    bus.interface()->setTimeout(answerTimeoutMs);
    // The object is registered before the name, so that a caller which finds the name also finds the object. The name
    // may belong to a process with another configuration folder; it comes to this one when that process ends.
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    const auto reply = bus.interface()->registerService(busName, QDBusConnectionInterface::QueueService,
                                                        QDBusConnectionInterface::DontAllowReplacement);
    m_hasBusName = reply.isValid();
}

SingleInstance::HandOver SingleInstance::handOver(const QStringList &urls, QString &reason) const
{
    QLocalSocket socket;
    socket.connectToServer(socketPath());
    if (socket.waitForConnected(answerTimeoutMs)) {
        socket.write(QJsonDocument(QJsonArray::fromStringList(urls)).toJson(QJsonDocument::Compact) + '\n');
        socket.waitForBytesWritten(answerTimeoutMs);
        // A process that is ending closes the connection without an answer. One that is busy answers later: it has the
        // message.
        const bool isRefused =
            !socket.waitForReadyRead(answerTimeoutMs) && socket.state() == QLocalSocket::UnconnectedState;
        reason = socket.errorString();
        return isRefused ? HandOver::Failed : HandOver::Delivered;
    }
    reason = socket.errorString();
    if (!hasBus()) {
        return HandOver::Failed;
    }
    const QDBusMessage answer = QDBusConnection::sessionBus().call(busCall(urls), QDBus::Block, answerTimeoutMs);
    return answer.type() == QDBusMessage::ErrorMessage ? HandOver::Failed : HandOver::Delivered;
}

void SingleInstance::announceEnd()
{
    m_lock.announceEnd();
    m_server.reset();
    if (std::exchange(m_hasBusName, false)) {
        QDBusConnection bus = QDBusConnection::sessionBus();
        bus.unregisterObject(objectPath);
        bus.unregisterService(busName);
    }
}

void SingleInstance::acceptHandOver()
{
    while (QLocalSocket *client = m_server->nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] { receive(*client); });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
    }
}

void SingleInstance::receive(QLocalSocket &client)
{
    if (!client.canReadLine()) {
        return;
    }
    const QStringList urls = QJsonDocument::fromJson(client.readLine()).toVariant().toStringList();
    client.write("ok\n");
    client.flush();
    if (urls.isEmpty()) {
        Q_EMIT activationRequested();
    } else {
        Q_EMIT openRequested(urls);
    }
}

} // namespace quillhaven

#include "SingleInstance.moc"
