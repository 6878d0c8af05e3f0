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

class Call : public QEvent
{
public:
    explicit Call(std::function<void()> action) : QEvent(QEvent::User), m_action(std::move(action)) {}
    void run() const { m_action(); }

private:
    std::function<void()> m_action;
};

/// Receives the calls. It outlives them all, whatever they destroy.
class Receiver : public QObject
{
public:
    Receiver() { moveToThread(QCoreApplication::instance()->thread()); }

    void post(std::unique_ptr<Call> call)
    {
        m_posts.fetch_add(1, std::memory_order_release);
        QCoreApplication::postEvent(this, call.release());
    }

    bool event(QEvent *event) override
    {
        m_posts.load(std::memory_order_acquire);
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        static_cast<const Call *>(event)->run();
        return true;
    }

private:
    /// Orders the threads by itself: the thread sanitizer does not see the order that Qt's queue establishes.
    std::atomic<quint64> m_posts = 0;
};

} // namespace

void postToMainThread(std::function<void()> action)
{
    static Receiver receiver;
    receiver.post(std::make_unique<Call>(std::move(action)));
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
