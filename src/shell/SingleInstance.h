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

/// One process of the program at a time: the first one holds a name on the session bus, and a later one passes on what
/// it was started with and ends. The first one then brings its window to the front (`AppDelegate::reopen`). Without a
/// bus a local socket in the user's runtime folder does the same.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role { Primary, Secondary };

    /// `socketDirectory` is a folder of the user's own, for sessions without a bus.
    explicit SingleInstance(const QString &socketDirectory, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Takes the name, or hands the arguments that are URLs to the process that holds it. Ask once, at the start. Waits
    /// two seconds at most for a process that does not answer. Throws a FileError when there is neither a bus nor a
    /// folder to write to.
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
    // Held by the primary for as long as it runs.
    ScopedFd m_lock;
    std::unique_ptr<QLocalServer> m_server;
};

} // namespace quillhaven
