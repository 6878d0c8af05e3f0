// SPDX-License-Identifier: GPL-3.0-or-later

#include "shell/TerminationSignals.h"

#include <QCoreApplication>
#include <QEvent>

#include <csignal>

#include <sys/signalfd.h>
#include <unistd.h>

namespace quillhaven {

namespace {

sigset_t terminationSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, number);
    }
    return signals;
}

} // namespace

void TerminationSignals::block()
{
    const sigset_t signals = terminationSignals();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TerminationSignals::TerminationSignals(QObject *parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
    const sigset_t signals = terminationSignals();
    m_fd = ScopedFd(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!m_fd.isOpen()) {
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_fd.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] {
        signalfd_siginfo information{};
        if (::read(m_fd.get(), &information, sizeof information) == sizeof information) {
            Q_EMIT terminationRequested();
        }
    });
}

TerminationSignals::~TerminationSignals() = default;

bool TerminationSignals::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != QCoreApplication::instance() || event->type() != QEvent::Quit) {
        return false;
    }
    Q_EMIT terminationRequested();
    return true;
}

} // namespace quillhaven
