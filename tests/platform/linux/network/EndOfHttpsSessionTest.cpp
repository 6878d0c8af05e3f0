// SPDX-License-Identifier: GPL-3.0-or-later

// The end of a process comes once, so this is the only test of its program.

#include "async/WorkInFlight.h"
#include "platform/linux/network/HttpsSession.h"
#include "platform/linux/network/NetworkError.h"
#include "support/HttpsServer.h"
#include "support/ManualClock.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

QString failure(const RunningTask<UrlResponse> &task)
{
    try {
        static_cast<void>(task.wait());
    } catch (const NetworkError &error) {
        return error.errorDescription();
    }
    return {};
}

} // namespace

TEST(EndOfHttpsSession, TheEndOfTheProgramStopsTransfersAndDoesNotWaitForThem)
{
    HttpsServer server;
    ManualClock clock;
    HttpsSession session(clock, server.authorities());
    const auto request = [&](const QString &path) {
        return RunningTask<UrlResponse>(session.data({.url = server.url(path), .headers = {}}));
    };
    const auto running = request(QStringLiteral("/silent"));
    ASSERT_TRUE(server.eventuallyPrints("got /silent"));
    ASSERT_EQ(WorkInFlight::count(), 0);

    bool hasEnded = false;
    WorkInFlight::close([&hasEnded] { hasEnded = true; });
    const auto late = request(QStringLiteral("/status/200"));

    EXPECT_EQ(failure(running), QStringLiteral("The transfer was stopped, because the program is ending."));
    EXPECT_EQ(failure(late), QStringLiteral("No transfer was started, because the program is ending."));
    EXPECT_TRUE(spinUntil([&] { return hasEnded; }));
    EXPECT_TRUE(server.eventuallyPrints("lost /silent"));
    EXPECT_FALSE(server.lines().contains(QStringLiteral("got /status/200")));
}
