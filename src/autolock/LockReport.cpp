// SPDX-License-Identifier: GPL-3.0-or-later

#include "autolock/LockReport.h"

#include <QStringList>

#include <algorithm>

namespace quillhaven {

namespace {

constexpr qsizetype mostReasons = 3;

QString counted(qsizetype items)
{
    return items == 1 ? QStringLiteral("1 item") : QString::number(items) + QStringLiteral(" items");
}

} // namespace

void LockReport::locked()
{
    --m_pending;
    ++m_locked;
}

void LockReport::leftUnlocked()
{
    --m_pending;
}

void LockReport::failed(const QString &reason)
{
    --m_pending;
    const auto same = std::ranges::find(m_failures, reason, &Failure::reason);
    if (same == m_failures.end()) {
        m_failures.append({.reason = reason, .items = 1});
    } else {
        ++same->items;
    }
}

QString LockReport::text(const QString &cause) const
{
    QStringList sentences;
    if (m_locked > 0) {
        sentences.append(counted(m_locked) + (m_locked == 1 ? QStringLiteral(" was") : QStringLiteral(" were")) +
                         QStringLiteral(" locked ") + cause + QLatin1Char('.'));
    }
    for (const Failure &failure : m_failures.first(std::min(m_failures.size(), mostReasons))) {
        sentences.append(counted(failure.items) + QStringLiteral(" could not be locked: ") + failure.reason);
    }
    qsizetype others = 0;
    for (const Failure &failure : m_failures.sliced(std::min(m_failures.size(), mostReasons))) {
        others += failure.items;
    }
    if (others > 0) {
        sentences.append(counted(others) + QStringLiteral(" could not be locked for other reasons."));
    }
    return sentences.join(QLatin1Char('\n'));
}

} // namespace quillhaven
