// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <random>

namespace quillhaven::testing {

/// Which cases of a sweep a run tries. TEST_SHARE says how many of a hundred (100: all of them; 10 when it is not set),
/// and TEST_SEED draws the same ones again. The first use prints the seed.
class Sample
{
public:
    Sample();

    /// Whether the next case is tried.
    [[nodiscard]] bool isDrawn() { return m_random() % 100 < share(); }

    /// Of 100 cases.
    [[nodiscard]] static unsigned share();
    /// One seed for the whole run.
    [[nodiscard]] static unsigned seed();

private:
    std::mt19937 m_random;
};

} // namespace quillhaven::testing
