// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/printLogger.h"

#include "support/JournalStream.h"

#include <unistd.h>

#include <cstdio>
#include <memory>

namespace quillhaven {

namespace {

using Sink = std::function<void(const QString &)>;

/// Access it only with std::atomic_load and std::atomic_store. Never destroyed, since a worker thread may log until the
/// process ends.
std::shared_ptr<const Sink> &logSink()
{
    static auto &sink = *new std::shared_ptr<const Sink>;
    return sink;
}

} // namespace

void printLogger(const QStringList &items, const QString &separator, const QString &terminator)
{
    const QString text = items.join(separator) + terminator;
    if (const auto sink = std::atomic_load(&logSink())) {
        (*sink)(text);
        return;
    }
    static const bool isKept = isJournalStream(STDOUT_FILENO);
    if (isKept) {
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

void setLogSink(Sink sink)
{
    std::atomic_store(&logSink(), sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr);
}

} // namespace quillhaven
