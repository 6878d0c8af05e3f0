#include "platform/desktop/SingleInstance.h"

#include "platform/linux/SessionBus.h"
#include "platform/printLogger.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QUrl>
#include <QVariantMap>

namespace quillhaven {

namespace {

constexpr int answerTimeoutMs = 2000;

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

QStringList urlsIn(const QStringList &arguments)
{
    QStringList urls;
    for (const QString &argument : arguments.mid(1)) {
        if (argument.contains(QStringLiteral("://")) && QUrl(argument).isValid()) {
            urls.append(argument);
        }
    }
    return urls;
}

QDBusMessage handOver(const QStringList &urls)
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

} // namespace

SingleInstance::SingleInstance(const QString &socketDirectory, QObject *parent)
    : QObject(parent), m_socketDirectory(socketDirectory)
{
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim(const QStringList &arguments)
{
    const QStringList urls = urlsIn(arguments);
    return hasSessionBus() && QDBusConnection::sessionBus().isConnected() ? claimOnBus(urls) : claimBySocket(urls);
}

SingleInstance::Role SingleInstance::claimOnBus(const QStringList &urls)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    // The object before the name: whoever finds the name finds the object too.
    new ApplicationAdaptor(this);
    bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
    bus.interface()->setTimeout(answerTimeoutMs);
    const auto reply = bus.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                                        QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        return claimBySocket(urls);
    }
    if (reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        return Role::Primary;
    }
    bus.unregisterObject(objectPath);
    const QDBusMessage answer = bus.call(handOver(urls), QDBus::Block, answerTimeoutMs);
    if (answer.type() == QDBusMessage::ErrorMessage) {
        printLogger(QStringLiteral("⚠️ Quillhaven runs already, but it does not answer: ") + answer.errorMessage());
    }
    return Role::Secondary;
}

SingleInstance::Role SingleInstance::claimBySocket(const QStringList &urls)
{
    const QString path = m_socketDirectory + QStringLiteral("/quillhaven.socket");
    // The lock decides who looks first, so that two processes never take a stale socket away from each other.
    QLockFile lock(path + QStringLiteral(".lock"));
    if (!lock.tryLock(answerTimeoutMs)) {
        printLogger(QStringLiteral("⚠️ Could not tell whether Quillhaven runs already: no lock in ") +
                    m_socketDirectory);
        return Role::Primary;
    }
    QLocalSocket socket;
    socket.connectToServer(path);
    if (socket.waitForConnected(answerTimeoutMs)) {
        socket.write(QJsonDocument(QJsonArray::fromStringList(urls)).toJson(QJsonDocument::Compact) + '\n');
        socket.waitForBytesWritten(answerTimeoutMs);
        socket.disconnectFromServer();
        return Role::Secondary;
    }
    QLocalServer::removeServer(path);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server->listen(path)) {
        printLogger(QStringLiteral("⚠️ A second start will not find this one: ") + m_server->errorString());
    }
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        QLocalSocket *client = m_server->nextPendingConnection();
        connect(client, &QLocalSocket::readyRead, this, [this, client] {
            if (client->canReadLine()) {
                receive(client->readLine());
            }
        });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
    });
    return Role::Primary;
}

void SingleInstance::receive(const QByteArray &message)
{
    const QStringList urls = QJsonDocument::fromJson(message).array().toVariantList().isEmpty()
                                 ? QStringList()
                                 : QVariant(QJsonDocument::fromJson(message).array().toVariantList()).toStringList();
    if (urls.isEmpty()) {
        Q_EMIT activationRequested();
    } else {
        Q_EMIT openRequested(urls);
    }
}

} // namespace quillhaven

#include "SingleInstance.moc"
