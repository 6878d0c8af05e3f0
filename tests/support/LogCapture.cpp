// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/LogCapture.h"

#include "support/printLogger.h"

#include <QMutexLocker>

namespace quillhaven::test {

LogCapture::LogCapture()
{
    setLogSink([captured = m_text](const QString &text) {
        const QMutexLocker lock(&captured->mutex);
        captured->text += text;
    });
}

LogCapture::~LogCapture()
{
    setLogSink({});
}

QStringList LogCapture::lines() const
{
    const QMutexLocker lock(&m_text->mutex);
    QStringList lines = m_text->text.split(QLatin1Char('\n'));
    if (!lines.isEmpty() && lines.last().isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

void LogCapture::clear()
{
    const QMutexLocker lock(&m_text->mutex);
    m_text->text.clear();
}

} // namespace quillhaven::test
