// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <QObject>
#include <QStringList>

#include <memory>

QT_BEGIN_NAMESPACE
class QLocalServer;
QT_END_NAMESPACE

namespace quillhaven {

/// Ensures that only one process of the program runs. The first one owns a name on the session bus; a later one passes
/// its arguments to it and exits, and the first one brings its window to the front (`AppDelegate::reopen`). Without a
/// session bus, a local socket in the user's runtime folder is used instead.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role { Primary, Secondary };

    /// `socketDirectory` is a private folder of the user, for sessions without a bus.
    explicit SingleInstance(const QString &socketDirectory, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Acquires the name, or passes the arguments that are URLs to the process that owns it. Call it once, at the
    /// start. Waits at most two seconds for a process that does not answer. Throws a FileError if there is neither a
    /// bus nor a writable folder.
    [[nodiscard]] Role claim(const QStringList &arguments);

    static inline const QString busName = QStringLiteral("com.tarnwick.quillhaven");
    static inline const QString objectPath = QStringLiteral("/com/tarnwick/quillhaven");

Q_SIGNALS:
    /// The user started the program again.
    void activationRequested();
    /// The program was asked to open these.
    void openRequested(const QStringList &urls);

private:
    [[nodiscard]] Role claimOnBus(const QStringList &urls);
    [[nodiscard]] Role claimBySocket(const QStringList &urls);
    [[nodiscard]] bool takeLock(const QString &path);
    void acceptHandOver();
    void receive(const QByteArray &message);

    QString m_socketDirectory;
    // Held by the primary instance while it is running.
    ScopedFd m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace quillhaven
