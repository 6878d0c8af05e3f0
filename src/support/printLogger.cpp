// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/printLogger.h"

#include <cstdio>

namespace quillhaven {

namespace {

std::function<void(const QString &)> &logSink()
{
    static std::function<void(const QString &)> sink;
    return sink;
}

} // namespace

void printLogger(const QStringList &items, const QString &separator, const QString &terminator)
{
    const QString text = items.join(separator) + terminator;
    if (logSink()) {
        logSink()(text);
        return;
    }
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void printLogger(const QString &line)
{
    printLogger(QStringList{line});
}

QString printed(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

void setLogSink(std::function<void(const QString &)> sink)
{
    logSink() = std::move(sink);
}

} // namespace quillhaven
