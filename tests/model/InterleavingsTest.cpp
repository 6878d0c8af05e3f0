// SPDX-License-Identifier: GPL-3.0-or-later

// Operations that run concurrently, on the same and on different items, in rounds: see Interleavings. A failure prints
// the seed and the last round. TEST_SHARE sets the number of rounds and TEST_SEED the seed: see support/Sample.h.

#include "model/Interleavings.h"
#include "support/Sample.h"

using namespace quillhaven;
using namespace quillhaven::test;

TEST(Interleavings, LoseNoDataInAnyOrder)
{
    const int rounds = static_cast<int>(Sample::share()) * 200;
    LogCapture log;
    TestPlatform services;
    Interleavings items(services, Sample::seed());
    for (int i = 0; i < rounds && !HasFailure(); ++i) {
        log.clear();
        const std::string started = items.round();
        items.check();
        EXPECT_FALSE(HasFailure()) << "round " << i << " of seed " << Sample::seed() << ":" << started << "\n"
                                   << log.lines().join(QLatin1Char('\n')).toStdString();
    }
    std::printf("%d rounds, %d operations, seed %u\n", rounds, items.operations(), Sample::seed());
}
