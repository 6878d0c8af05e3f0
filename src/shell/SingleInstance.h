// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "shell/ProcessLock.h"

#include <QObject>
#include <QStringList>

#include <memory>

QT_BEGIN_NAMESPACE
class QLocalServer;
class QLocalSocket;
QT_END_NAMESPACE

namespace quillhaven {

/// Ensures that only one process of the program runs for each configuration folder, in whatever sessions the user
/// starts it. A later one passes its arguments to the first one and exits, and the first one brings its window to the
/// front (`AppDelegate::reopen`). They meet at a local socket beside the lock file, or on the session bus where no
/// socket can be made.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role { Primary, Secondary };

    /// See ProcessLock for the folders.
    SingleInstance(const QString &directory, const QString &fallback, QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Takes the lock, or passes the arguments that are URLs to the process that holds it; a start at login passes
    /// nothing. Call it once, at the start. Waits at most two seconds for a process that does not answer, and a minute
    /// for one that is ending. Throws a FileError if no lock file can be opened.
    [[nodiscard]] Role claim(const QStringList &arguments);

    /// Those of the process's arguments that are addresses to open.
    [[nodiscard]] static QStringList urlsIn(const QStringList &arguments);

    /// Accepts no more hand-overs: a program that is started from now on waits for the end of this process. To be
    /// called as soon as the end is certain.
    void announceEnd();

    static inline const QString busName = QStringLiteral("com.tarnwick.quillhaven");
    static inline const QString objectPath = QStringLiteral("/com/tarnwick/quillhaven");

Q_SIGNALS:
    /// The user started the program again.
    void activationRequested();
    /// The program was asked to open these.
    void openRequested(const QStringList &urls);

private:
    enum class HandOver { Delivered, Failed };

    void becomeReachable();
    [[nodiscard]] HandOver handOver(const QStringList &urls, QString &reason) const;
    [[nodiscard]] QString socketPath() const;
    void acceptHandOver();
    void receive(QLocalSocket &client);

    QString m_directory;
    ProcessLock m_lock;
    std::unique_ptr<QLocalServer> m_server;
    bool m_hasBusName = false;
};

} // namespace quillhaven
