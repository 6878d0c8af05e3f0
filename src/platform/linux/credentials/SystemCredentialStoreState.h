// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"
#include "platform/Clock.h"
#include "platform/CredentialStoreState.h"

#include <memory>

QT_BEGIN_NAMESPACE
class QDBusServiceWatcher;
class QThreadPool;
QT_END_NAMESPACE

using GCancellable = struct _GCancellable;

namespace quillhaven {

class SystemCredentialStore;

/// Watches the store of the session, which works on its own queue, from the main thread. A call that takes two seconds
/// is waited for, and once the end of the process has been asked for, no call may take longer than that. A missing
/// keyring that appears on the bus is looked for again without a request.
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
    void callBegan(const std::shared_ptr<GCancellable> &call);
    void callEnded();
    void limitRunningCall();
    void setMissing(const QString &sentence);
    void watchForKeyring();
    void emitBecameReadable();

    SystemCredentialStore &m_store;
    QThreadPool &m_queue;
    Clock &m_clock;
    std::shared_ptr<GCancellable> m_runningCall;
    std::unique_ptr<RunningTimer> m_untilWaiting;
    std::unique_ptr<RunningTimer> m_untilCancelled;
    QString m_missing; ///< the sentence; empty while the store answers
    std::unique_ptr<QDBusServiceWatcher> m_watcher;
    WorkInFlight::AtClosing m_atClosing;
};

} // namespace quillhaven
