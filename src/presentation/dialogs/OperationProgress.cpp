// SPDX-License-Identifier: GPL-3.0-or-later

#include "presentation/dialogs/OperationProgress.h"

#include "platform/Clock.h"

#include <algorithm>
#include <cmath>

namespace quillhaven {

using namespace std::chrono_literals;

namespace {

/// In words for which a guess is good enough. Nothing is said while little is known.
QString words(std::chrono::nanoseconds spent, double done, double left)
{
    if (spent < 3s || done <= 0.0 || left <= 0.0) {
        return {};
    }
    const auto rest = std::chrono::duration_cast<std::chrono::seconds>(spent * (left / done));
    if (rest < 10s) {
        return QStringLiteral("A few seconds left");
    }
    if (rest < 1min) {
        return QStringLiteral("Less than a minute left");
    }
    const auto minutes = std::chrono::round<std::chrono::minutes>(rest);
    if (minutes < 90min) {
        return minutes == 1min ? QStringLiteral("About a minute left")
                               : QStringLiteral("About %1 minutes left").arg(minutes.count());
    }
    return QStringLiteral("About %1 hours left").arg(std::chrono::round<std::chrono::hours>(rest).count());
}

} // namespace

int OperationProgress::percent() const
{
    return static_cast<int>(m_progress * 100);
}

int OperationProgress::show()
{
    m_isPresented = true;
    m_message.clear();
    m_progress = 0;
    m_beginning.reset();
    m_timeLeft.clear();
    ++m_latest;
    Q_EMIT changed();
    return m_latest;
}

void OperationProgress::hide()
{
    m_isPresented = false;
    Q_EMIT changed();
}

void OperationProgress::hideBeforeBeginning()
{
    if (!m_beginning) {
        hide();
    }
}

void OperationProgress::report(const QString &message, double progress)
{
    m_message = message;
    m_progress = std::isnan(progress) ? 0 : std::clamp(progress, 0.0, 1.0);
    const std::chrono::nanoseconds now = m_clock.uptime();
    if (!m_beginning) {
        m_beginning = Beginning{now, m_progress};
    }
    m_timeLeft = words(now - m_beginning->time, m_progress - m_beginning->progress, 1 - m_progress);
    Q_EMIT changed();
}

} // namespace quillhaven
