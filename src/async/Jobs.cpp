// SPDX-License-Identifier: GPL-3.0-or-later

#include "async/Jobs.h"

#include "support/LocalizedError.h"
#include "support/printLogger.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <memory>

namespace quillhaven {

namespace {

QCoro::Task<> runToEnd(std::shared_ptr<std::function<QCoro::Task<>()>> job)
{
    try {
        co_await (*job)();
    } catch (...) {
        printLogger(QStringLiteral("❌ A job ended with an error that nobody handled: ") +
                    localizedDescription(std::current_exception()));
    }
}

} // namespace

void startJob(std::function<QCoro::Task<>()> job)
{
    auto kept = std::make_shared<std::function<QCoro::Task<>()>>(std::move(job));
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [kept = std::move(kept)] { runToEnd(kept); }, Qt::QueuedConnection);
}

} // namespace quillhaven
