// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quillhaven {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP), and the desktop's request to quit at the end
/// of the session, which would otherwise only close the windows, into a Qt signal in the event loop. The program then
/// ends as on any request (`ApplicationPresence::terminate`): no new work begins, and file operations in progress are
/// finished first. There may be only one object at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Blocks the signals for this thread and every thread that it starts. Call it before starting any: a thread that
    /// does not block the signals would receive them.
    static void block();

    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void terminationRequested();

private:
    ScopedFd m_fd;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< destroyed before the descriptor that it watches
};

} // namespace quillhaven
