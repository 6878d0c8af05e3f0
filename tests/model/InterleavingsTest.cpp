// SPDX-License-Identifier: GPL-3.0-or-later

// Operations that run side by side, on the same and on different items, in rounds: see Interleavings. A failure prints
// the seed and the last round. TEST_SHARE and TEST_SEED say how many rounds and which: see support/Sample.h.

#include "model/Interleavings.h"
#include "support/Sample.h"

using namespace quillhaven;
using namespace quillhaven::testing;

TEST(Interleavings, LoseNothingWhicheverOperationComesFirst)
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
