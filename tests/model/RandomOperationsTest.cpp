// SPDX-License-Identifier: GPL-3.0-or-later

// Random sequences of actions of users, other programs and restarts on a few items, compared with a simple model of the
// expected files. A failure prints its seed and the steps that led to it.

#include "model/ItemModel.h"
#include "support/printLogger.h"

using namespace quillhaven;
using namespace quillhaven::test;

class RandomOperations : public ::testing::TestWithParam<unsigned>
{
};

TEST_P(RandomOperations, LeaveEveryItemInTheStateOfTheModel)
{
    constexpr int steps = 600;
    const LogCapture log;
    TestPlatform services;
    ItemModel model(services, GetParam());
    std::string history = "seed " + std::to_string(GetParam());
    for (int i = 0; i < steps && !HasFailure(); ++i) {
        history += "\n" + model.step();
        model.check();
    }
    EXPECT_FALSE(HasFailure()) << history;
    std::printf("seed %u: %d steps\n", GetParam(), steps);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomOperations, ::testing::Range(1u, 13u));
