// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"
#include "platform/Clock.h"
#include "platform/CredentialStoreState.h"

#include <chrono>
#include <memory>

QT_BEGIN_NAMESPACE
class QDBusServiceWatcher;
class QThreadPool;
QT_END_NAMESPACE

namespace quillhaven {

class SystemCredentialStore;

/// Watches the store of the session, which works on its own queue, from the main thread. A call that takes two seconds
/// is waited for. Once the end of the process has been asked for, all calls together may take two seconds; then the
/// running one is ended, and those after it are refused at once. A missing keyring that appears on the bus is looked
/// for again without a request.
class SystemCredentialStoreState : public CredentialStoreState
{
    Q_OBJECT

public:
    /// The references must outlive this object. `store` has not been called yet.
    SystemCredentialStoreState(SystemCredentialStore &store, QThreadPool &queue, Clock &clock);
    ~SystemCredentialStoreState() override;

    void tryAgain() override;
    void useStoreAtHand() override;

private:
    void callBegan();
    void callEnded();
    void limitCalls();
    void setMissing(const QString &sentence);
    void watchForKeyring();
    void emitBecameReadable();

    SystemCredentialStore &m_store;
    QThreadPool &m_queue;
    Clock &m_clock;
    bool m_isCallRunning = false;
    std::unique_ptr<RunningTimer> m_untilWaiting;
    std::unique_ptr<RunningTimer> m_untilClosed; ///< runs while a call does, once the end has been asked for
    std::chrono::nanoseconds m_limitedSince{};   ///< the uptime at its start
    std::chrono::nanoseconds m_leftAtEnd;        ///< what the calls may still take at its start
    QString m_missing;                           ///< the sentence; empty while the store answers
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    WorkInFlight::AtClosing m_atClosing;
};

} // namespace quillhaven
