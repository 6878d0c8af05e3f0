// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/linux/files/ScopedFd.h"

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quillhaven {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a signal of the main loop, upon which the
/// program ends as from its menu (`ApplicationPresence::terminate`): no new work begins, and file work under way is
/// finished first. One at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Blocks the signals for this thread and every one that it starts. Call it before the first of them: a thread that
    /// does not block the signals would receive them.
    static void block();

    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    ScopedFd m_fd;
    std::unique_ptr<QSocketNotifier> m_notifier; ///< ends before the descriptor that it watches
};

} // namespace quillhaven
