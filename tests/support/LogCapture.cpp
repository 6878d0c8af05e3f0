// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/LogCapture.h"

#include "support/printLogger.h"

#include <QMutexLocker>

namespace quillhaven::testing {

LogCapture::LogCapture()
{
    setLogSink([this](const QString &text) {
        const QMutexLocker lock(&m_mutex);
        m_text += text;
    });
}

LogCapture::~LogCapture()
{
    setLogSink({});
}

QStringList LogCapture::lines() const
{
    const QMutexLocker lock(&m_mutex);
    QStringList lines = m_text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

void LogCapture::clear()
{
    const QMutexLocker lock(&m_mutex);
    m_text.clear();
}

} // namespace quillhaven::testing
