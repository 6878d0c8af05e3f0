// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/BulkRun.h"

#include "catalogue/QuillhavenError.h"
#include "support/DisplayName.h"

namespace quillhaven {

BulkRun::BulkRun(qsizetype total, ProgressCallback progressCallback)
    : m_total(total), m_progressCallback(std::move(progressCallback))
{
}

QCoro::Task<> BulkRun::settle(QString name, QCoro::Task<> work)
{
    try {
        co_await work;
        ++m_succeeded;
    } catch (...) {
        m_errorLines.append(displayName(name) + QStringLiteral(": ") + localizedDescription(std::current_exception()));
    }
}

void BulkRun::finish(const QString &failureHeading) const
{
    m_progressCallback(QStringLiteral("Completed %1 of %2 items").arg(m_succeeded).arg(m_total), 1.0);
    if (!m_errorLines.isEmpty()) {
        throw QuillhavenError(QuillhavenError::encryptionFailed, failureHeading + m_errorLines.join(QLatin1Char('\n')));
    }
}

} // namespace quillhaven
