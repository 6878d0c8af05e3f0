// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/printLogger.h"
#include "support/LogCapture.h"

#include <gtest/gtest.h>

#include <QSemaphore>

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

namespace quillhaven::test {
namespace {

TEST(PrintLogger, JoinsTheItemsAndAppendsTheTerminator)
{
    const LogCapture log;
    printLogger({QStringLiteral("a"), QStringLiteral("b")}, QStringLiteral(", "), QStringLiteral(";\n"));
    printLogger(QStringLiteral("c"));
    EXPECT_EQ(log.lines(), QStringList({QStringLiteral("a, b;"), QStringLiteral("c")}));
}

TEST(PrintLogger, ASinkReplacedWhileAWorkerUsesItRemainsValid)
{
    QSemaphore isInside;
    QSemaphore mayGoOn;
    auto received = std::make_shared<QString>();
    const std::weak_ptr<QString> watched = received;
    setLogSink([&isInside, &mayGoOn, received = std::move(received)](const QString &text) {
        isInside.release();
        mayGoOn.acquire();
        *received += text;
    });
    QString afterwards;
    std::thread worker([&watched, &afterwards] {
        const auto kept = watched.lock();
        printLogger(QStringLiteral("late"));
        afterwards = *kept;
    });
    isInside.acquire();
    setLogSink({});
    EXPECT_FALSE(watched.expired());
    mayGoOn.release();
    worker.join();
    EXPECT_EQ(afterwards, QStringLiteral("late\n"));
    EXPECT_TRUE(watched.expired());
}

TEST(PrintLogger, CapturesCanBeCreatedAndDestroyedWhileAWorkerLogs)
{
    QSemaphore hasLogged;
    std::atomic<bool> isOver = false;
    std::optional<LogCapture> capture(std::in_place);
    std::thread worker([&] {
        while (!isOver) {
            printLogger(QStringLiteral("busy"));
            hasLogged.release();
        }
    });
    for (int i = 0; i < 100; ++i) {
        hasLogged.acquire(hasLogged.available() + 1);
        capture.emplace();
    }
    isOver = true;
    worker.join();
    for (const QString &line : capture->lines()) {
        EXPECT_EQ(line, QStringLiteral("busy"));
    }
}

} // namespace
} // namespace quillhaven::test
