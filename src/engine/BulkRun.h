// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/ProgressCallback.h"

#include <QCoroTask>
#include <QStringList>

namespace quillhaven {

/// The account of a run over several items: what is reported for each, and what is thrown at the end.
class BulkRun
{
public:
    BulkRun(qsizetype total, ProgressCallback progressCallback);

    /// Awaits the work on one item, which has begun. A failure is noted for the end.
    [[nodiscard]] QCoro::Task<> settle(QString name, QCoro::Task<> work);
    /// Reports the end. Throws QuillhavenError::encryptionFailed with the heading and a line for each failure.
    void finish(const QString &failureHeading) const;

private:
    qsizetype m_total;
    qsizetype m_succeeded = 0;
    QStringList m_errorLines;
    ProgressCallback m_progressCallback;
};

} // namespace quillhaven
