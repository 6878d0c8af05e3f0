// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/MainThread.h"

#include "async/WorkInFlight.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QThread>

#include <atomic>

namespace quillhaven {

namespace {

/// The flag orders the two threads by itself: the thread sanitizer does not see the order that Qt's queue establishes.
class Call : public QEvent
{
public:
    explicit Call(std::function<void()> action) : QEvent(QEvent::User), m_action(std::move(action))
    {
        m_isWritten.test_and_set(std::memory_order_release);
    }
    void run() const
    {
        m_isWritten.wait(false, std::memory_order_acquire);
        m_action();
    }

private:
    std::function<void()> m_action;
    std::atomic_flag m_isWritten;
};

/// Receives the calls. It outlives them all, whatever they destroy.
class Receiver : public QObject
{
public:
    Receiver() { moveToThread(QCoreApplication::instance()->thread()); }

    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        static_cast<const Call *>(event)->run();
        return true;
    }
};

} // namespace

void postToMainThread(std::function<void()> action)
{
    static Receiver receiver;
    QCoreApplication::postEvent(&receiver, new Call(std::move(action)));
}

void resumeOnMainThread(std::coroutine_handle<> waiting)
{
    postToMainThread([waiting] {
        if (WorkInFlight::isClosed()) {
            WorkInFlight::park(waiting);
        } else {
            waiting.resume();
        }
    });
}

} // namespace quillhaven
