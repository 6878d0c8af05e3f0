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

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

constexpr auto moment = 2s;
constexpr auto limitAtEnd = 2s;

} // namespace

SystemCredentialStoreState::SystemCredentialStoreState(SystemCredentialStore &store, QThreadPool &queue, Clock &clock)
    : m_store(store), m_queue(queue), m_clock(clock), m_leftAtEnd(limitAtEnd), m_atClosing([this] { limitCalls(); })
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

void SystemCredentialStoreState::callBegan()
{
    m_isCallRunning = true;
    m_untilWaiting = m_clock.startOneShot(moment, [this] { setPhase(Phase::Waiting); });
    if (WorkInFlight::isClosing()) {
        limitCalls();
    }
}

void SystemCredentialStoreState::callEnded()
{
    m_isCallRunning = false;
    m_untilWaiting.reset();
    if (m_untilClosed) {
        m_leftAtEnd -= m_clock.uptime() - m_limitedSince;
        m_untilClosed.reset();
    }
    setPhase(m_missing.isEmpty() ? Phase::Usable : Phase::Missing, m_missing);
}

void SystemCredentialStoreState::limitCalls()
{
    // Not at once: the password of an item that has just been moved is still to be stored. Nor by the time of the end
    // alone: moving the item may take longer than a store that answers may be given.
    if (m_isCallRunning) {
        m_limitedSince = m_clock.uptime();
        m_untilClosed = m_clock.startOneShot(std::chrono::ceil<std::chrono::milliseconds>(m_leftAtEnd),
                                             [&store = m_store] { store.close(); });
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
