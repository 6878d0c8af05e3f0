// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <random>

namespace quillhaven::test {

/// Selects the cases of a sweep that a run tries. TEST_SHARE sets the percentage (by default 10; 100 for all), and
/// TEST_SEED repeats the selection. The first use prints the seed.
class Sample
{
public:
    Sample();

    /// Whether the next case is tried.
    [[nodiscard]] bool isDrawn() { return m_random() % 100 < share(); }

    /// The percentage of the cases.
    [[nodiscard]] static unsigned share();
    /// The same seed for the whole run.
    [[nodiscard]] static unsigned seed();

private:
    std::mt19937 m_random;
};

} // namespace quillhaven::test
