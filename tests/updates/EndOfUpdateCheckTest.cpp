// SPDX-License-Identifier: GPL-3.0-or-later

// The end of a process comes once, so this is the only test of its program.

#include "Manifest.h"
#include "async/Answer.h"
#include "async/WorkInFlight.h"
#include "platform/UserDefaults.h"
#include "support/LogCapture.h"
#include "support/RunTask.h"
#include "support/TestPlatform.h"
#include "updates/UpdateManager.h"

#include <gtest/gtest.h>

using namespace quillhaven;
using namespace quillhaven::test;

TEST(EndOfUpdateCheck, ACheckThatTheEndOfTheProgramOvertakesTouchesNothing)
{
    LogCapture log;
    TestPlatform services;
    const Answer<UrlResponse> held;
    services.urlSession.answer = [held](UrlRequest) -> QCoro::Task<UrlResponse> {
        const Answer<UrlResponse> awaited = held;
        co_return co_await awaited;
    };
    UpdateManager updates(services.platform(), QStringLiteral("https://updates.example/m"));
    const RunningTask<void> running(updates.performUpdateCheck(false));
    for (const auto changed : {&UpdateManager::isCheckingForUpdatesChanged, &UpdateManager::availableUpdateChanged,
                               &UpdateManager::lastCheckDateChanged, &UpdateManager::checkErrorChanged}) {
        QObject::connect(&updates, changed, &updates, [] { ADD_FAILURE() << "a field has changed"; });
    }
    log.clear();

    bool hasEnded = false;
    WorkInFlight::close([&hasEnded] { hasEnded = true; });
    held.give({.data = manifest(appRecord(QStringLiteral("2.0.0"))), .statusCode = 200});

    EXPECT_TRUE(spinUntil([&] { return hasEnded; })); // the check does not hold up the end
    spinOnce();
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_FALSE(services.defaults.standard().objectForKey(QStringLiteral("LastUpdateCheck")).isValid());
    running.abandon();
}
