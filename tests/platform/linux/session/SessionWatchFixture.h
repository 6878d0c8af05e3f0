// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "async/WorkInFlight.h"
#include "platform/NotificationCenter.h"
#include "platform/WatchedSources.h"
#include "platform/linux/session/BusDouble.h"
#include "platform/linux/session/SessionWatch.h"
#include "support/ManualClock.h"

namespace quillhaven::test {

using namespace std::chrono_literals;
using Source = WatchedSources::Source;

class SessionWatchFixture : public ::testing::Test
{
protected:
    SessionWatchFixture()
    {
        QObject::connect(&centers.standard, &NotificationCenter::posted,
                         [this](const QString &name) { standard << name; });
        QObject::connect(&centers.workspace, &NotificationCenter::posted,
                         [this](const QString &name) { workspace << name; });
        QObject::connect(&centers.distributed, &NotificationCenter::posted,
                         [this](const QString &name) { distributed << name; });
    }

    ~SessionWatchFixture() override
    {
        watch.reset();
        spinOnce(); // a job of it that has not started
        spinUntil([] { return WorkInFlight::count() == 0; });
        spinOnce();
    }

    void start() { watch = std::make_unique<SessionWatch>(centers, watched, clock); }
    /// Waits until the entry of a source says this.
    void expectState(Source source, bool isAvailable, const QString &sentence)
    {
        const WatchedSources::State expected{isAvailable, sentence};
        EXPECT_TRUE(spinUntil([&] { return watched.state(source) == expected; }, 20'000))
            << qUtf8Printable(watched.state(source).value_or(WatchedSources::State()).sentence);
    }
    /// Waits until exactly these have been posted.
    static void expectPosts(const QStringList &posts, const QStringList &expected)
    {
        EXPECT_TRUE(spinUntil([&] { return posts.size() >= expected.size(); }));
        EXPECT_EQ(posts, expected);
    }

    ManualClock clock;
    NotificationCenters centers;
    WatchedSources watched;
    QStringList standard;
    QStringList workspace;
    QStringList distributed;
    std::unique_ptr<SessionWatch> watch;
};

} // namespace quillhaven::test
