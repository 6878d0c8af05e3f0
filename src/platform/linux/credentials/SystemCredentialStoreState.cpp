// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/linux/credentials/SystemCredentialStoreState.h"

#include "async/Jobs.h"
#include "async/MainThread.h"
#include "async/OffMainThread.h"
#include "platform/linux/credentials/SystemCredentialStore.h"
#include "platform/linux/session/BusConnection.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QPointer>

#include <gio/gio.h>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto moment = 2s;

} // namespace

SystemCredentialStoreState::SystemCredentialStoreState(SystemCredentialStore &store, QThreadPool &queue, Clock &clock)
    : m_store(store), m_queue(queue), m_clock(clock), m_atClosing([this] { limitRunningCall(); })
{
    const auto posted =
        [self = QPointer(this)]<typename... Arguments>(void (SystemCredentialStoreState::*member)(Arguments...)) {
            return onMainThread(
                std::function<void(std::decay_t<Arguments>...)>([self, member](std::decay_t<Arguments>... arguments) {
                    if (self) {
                        (*self.*member)(arguments...);
                    }
                }));
        };
    m_store.setObserver({.callBegan = posted(&SystemCredentialStoreState::callBegan),
                         .callEnded = posted(&SystemCredentialStoreState::callEnded),
                         .missing = posted(&SystemCredentialStoreState::setMissing),
                         .becameReadable = posted(&SystemCredentialStoreState::emitBecameReadable)});
}

SystemCredentialStoreState::~SystemCredentialStoreState() = default;

void SystemCredentialStoreState::tryAgain()
{
    startJob([&store = m_store, &queue = m_queue]() -> QCoro::Task<> {
        auto look = [&store] { (void)store.tryAgain(); }; // the observer hears of the result
        co_await offMainThread(queue, std::move(look));
    });
}

void SystemCredentialStoreState::useStoreAtHand()
{
    startJob([&store = m_store, &queue = m_queue]() -> QCoro::Task<> {
        auto use = [&store] { (void)store.useStoreAtHand(); };
        co_await offMainThread(queue, std::move(use));
    });
}

void SystemCredentialStoreState::callBegan(const std::shared_ptr<GCancellable> &call)
{
    m_runningCall = call;
    m_untilWaiting = m_clock.startOneShot(moment, [this] { setPhase(Phase::Waiting); });
    if (WorkInFlight::isClosing()) {
        limitRunningCall();
    }
}

void SystemCredentialStoreState::callEnded()
{
    m_runningCall.reset();
    m_untilWaiting.reset();
    m_untilCancelled.reset();
    setPhase(m_missing.isEmpty() ? Phase::Usable : Phase::Missing, m_missing);
}

void SystemCredentialStoreState::limitRunningCall()
{
    // Not at once: the password of an item that has just been moved is still to be stored.
    if (m_runningCall) {
        m_untilCancelled = m_clock.startOneShot(moment, [call = m_runningCall] { g_cancellable_cancel(call.get()); });
    }
}

void SystemCredentialStoreState::setMissing(const QString &sentence)
{
    m_missing = sentence;
    if (!sentence.isEmpty()) {
        watchForKeyring();
    }
}

void SystemCredentialStoreState::watchForKeyring()
{
    if (m_watcher || !hasSessionBus()) {
        return;
    }
    m_watcher =
        std::make_unique<QDBusServiceWatcher>(QStringLiteral("org.freedesktop.secrets"), QDBusConnection::sessionBus(),
                                              QDBusServiceWatcher::WatchForRegistration);
    connect(m_watcher.get(), &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (phase() == Phase::Missing) {
            tryAgain();
        }
    });
}

void SystemCredentialStoreState::emitBecameReadable()
{
    Q_EMIT becameReadable();
}

} // namespace quillhaven
