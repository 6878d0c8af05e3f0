// SPDX-License-Identifier: GPL-3.0-or-later

// Operations that run concurrently, on the same and on different items, in rounds: see Interleavings. A failure prints
// the seed and the last round. TEST_SHARE sets the number of rounds and TEST_SEED the seed: see support/Sample.h.

#include "model/Interleavings.h"
#include "faults/SmallDisk.h"
#include "support/Sample.h"

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

void tryManyRounds(TestPlatform &services, int rounds)
{
    LogCapture log;
    Interleavings items(services, Sample::seed());
    for (int i = 0; i < rounds && !::testing::Test::HasFailure(); ++i) {
        log.clear();
        const std::string started = items.round();
        items.check();
        EXPECT_FALSE(::testing::Test::HasFailure())
            << "round " << i << " of seed " << Sample::seed() << ":" << started << "\n"
            << log.lines().join(QLatin1Char('\n')).toStdString();
    }
    std::printf("%d rounds, %d operations, seed %u\n", rounds, items.operations(), Sample::seed());
}

} // namespace

TEST(Interleavings, LoseNoDataInAnyOrder)
{
    TestPlatform services;
    tryManyRounds(services, static_cast<int>(Sample::share()) * 200);
}

TEST(Interleavings, LoseNoDataAcrossFileSystems)
{
    TestPlatform services;
    const SmallDisk storage(services.home.path(QStringLiteral(".local/share/quillhaven")), "16m");
    ASSERT_TRUE(storage.isMounted());
    tryManyRounds(services, static_cast<int>(Sample::share()) * 100); // each move copies, with a process of its own
}
