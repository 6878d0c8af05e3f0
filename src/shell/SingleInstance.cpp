// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/SingleInstance.h"

#include "platform/FileError.h"
#include "platform/linux/session/BusConnection.h"
#include "support/printLogger.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalServer>
#include <QLocalSocket>
#include <QThread>
#include <QUrl>
#include <QVariantMap>

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace quillhaven {

namespace {

constexpr int answerTimeoutMs = 2000;
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
    new ApplicationAdaptor(this);
    bus.interface()->setTimeout(answerTimeoutMs);
    QString reason;
    // The second round is for the case that the first instance has just ended without handling the call.
    for (int round = 0; round < 2; ++round) {
        // The object is registered before the name, so that a caller which finds the name also finds the object.
        bus.registerObject(objectPath, this, QDBusConnection::ExportAdaptors);
        const auto reply = bus.interface()->registerService(busName, QDBusConnectionInterface::DontQueueService,
                                                            QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid()) {
            return claimBySocket(urls);
        }
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered) {
            return Role::Primary;
        }
        bus.unregisterObject(objectPath);
        if (round == 0) {
            const QDBusMessage answer = bus.call(handOver(urls), QDBus::Block, answerTimeoutMs);
            if (answer.type() != QDBusMessage::ErrorMessage) {
                return Role::Secondary;
            }
            reason = answer.errorMessage();
        }
    }
    printLogger(QStringLiteral("⚠️ Quillhaven is already running, but it does not answer: ") + reason);
    return Role::Secondary;
}

SingleInstance::Role SingleInstance::claimBySocket(const QStringList &urls)
{
    const QString path = m_socketDirectory + QStringLiteral("/quillhaven.socket");
    // The kernel releases the lock when its holder ends for any reason, so a socket whose lock is free is stale.
    QElapsedTimer waiting;
    waiting.start();
    while (!takeLock(path + QStringLiteral(".lock"))) {
        QLocalSocket socket;
        socket.connectToServer(path);
        if (socket.waitForConnected(answerTimeoutMs)) {
            socket.write(QJsonDocument(QJsonArray::fromStringList(urls)).toJson(QJsonDocument::Compact) + '\n');
            socket.waitForBytesWritten(answerTimeoutMs);
            socket.disconnectFromServer();
            return Role::Secondary;
        }
        if (waiting.hasExpired(answerTimeoutMs)) {
            printLogger(QStringLiteral("⚠️ Quillhaven is already running, but it does not answer: ") +
                        socket.errorString());
            return Role::Secondary;
        }
        // The holder of the lock may not be listening yet.
        QThread::msleep(retryIntervalMs);
    }
    QLocalServer::removeServer(path);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server.get(), &QLocalServer::newConnection, this, &SingleInstance::acceptHandOver);
    if (!m_server->listen(path)) {
        printLogger(QStringLiteral("⚠️ Cannot listen for later starts: ") + m_server->errorString());
    }
    return Role::Primary;
}

bool SingleInstance::takeLock(const QString &path)
{
    QDir().mkpath(m_socketDirectory);
    ScopedFd file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!file.isOpen()) {
        // Two processes would overwrite each other's records, so the program must not start without the lock.
        throw FileError::fromErrno(errno, FileError::Action::Write, path);
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return false;
    }
    m_lock = std::move(file);
    return true;
}

void SingleInstance::acceptHandOver()
{
    while (QLocalSocket *client = m_server->nextPendingConnection()) {
        connect(client, &QLocalSocket::readyRead, this, [this, client] {
            if (client->canReadLine()) {
                receive(client->readLine());
            }
        });
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
    }
}

void SingleInstance::receive(const QByteArray &message)
{
    const QStringList urls = QJsonDocument::fromJson(message).toVariant().toStringList();
    if (urls.isEmpty()) {
        Q_EMIT activationRequested();
    } else {
        Q_EMIT openRequested(urls);
    }
}

} // namespace quillhaven

#include "SingleInstance.moc"
