// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/Sample.h"

#include <QtGlobal>

#include <cstdio>

namespace quillhaven::test {

Sample::Sample() : m_random(seed()) {}

unsigned Sample::share()
{
    constexpr int usual = 10;
    bool isSet = false;
    const int share = qEnvironmentVariableIntValue("TEST_SHARE", &isSet);
    return static_cast<unsigned>(isSet ? share : usual);
}

unsigned Sample::seed()
{
    static const unsigned seed = [] {
        bool isSet = false;
        const int set = qEnvironmentVariableIntValue("TEST_SEED", &isSet);
        const unsigned drawn = isSet ? static_cast<unsigned>(set) : std::random_device()() >> 1;
        std::printf("TEST_SEED=%u TEST_SHARE=%u\n", drawn, share());
        return drawn;
    }();
    return seed;
}

} // namespace quillhaven::test
