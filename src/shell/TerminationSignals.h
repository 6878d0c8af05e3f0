// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace quillhaven {

/// Turns the signals that ask a process to end (SIGTERM, SIGINT, SIGHUP) into a signal of the main loop, so that file
/// work under way is finished first. One at a time.
class TerminationSignals : public QObject
{
    Q_OBJECT

public:
    /// Holds the signals back for this thread and every one that it starts: call it before the first of them, since a
    /// thread that does not hold them back would take them.
    static void block();

    explicit TerminationSignals(QObject *parent = nullptr);
    ~TerminationSignals() override;

Q_SIGNALS:
    void terminationRequested();

private:
    int m_fd = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quillhaven
