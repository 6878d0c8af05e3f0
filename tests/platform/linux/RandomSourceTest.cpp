// SPDX-License-Identifier: GPL-3.0-or-later

// Only a deprecated call makes the real generator fail; OpenSSL offers no replacement for it.
#define OPENSSL_SUPPRESS_DEPRECATED

#include "contract/RandomSourceContract.h"
#include "platform/linux/OpenSslRandomSource.h"
#include "support/TestRandom.h"

#include <openssl/rand.h>

#include <cstring>

namespace quillhaven::test {
namespace {

/// The generator of this process, which fails halfway in `failingSource`.
class RealGenerator
{
public:
    ~RealGenerator() { RAND_set_rand_method(m_usual); }

    [[nodiscard]] RandomSource &source() { return m_source; }
    [[nodiscard]] RandomSource &failingSource()
    {
        RAND_set_rand_method(&failing());
        return m_source;
    }

private:
    static const RAND_METHOD &failing()
    {
        static const RAND_METHOD method = [] {
            RAND_METHOD broken{};
            broken.bytes = [](unsigned char *bytes, int count) {
                std::memset(bytes, 1, static_cast<size_t>(count / 2));
                return 0;
            };
            return broken;
        }();
        return method;
    }

    OpenSslRandomSource m_source;
    const RAND_METHOD *m_usual = RAND_get_rand_method();
};

struct CountingGenerator
{
    [[nodiscard]] RandomSource &source() { return m_source; }
    [[nodiscard]] RandomSource &failingSource() { return m_failing; }

private:
    CountingRandom m_source;
    FailingRandom m_failing;
};

/// After its failure it works like any other.
struct GeneratorThatFailsOnce
{
    GeneratorThatFailsOnce() { EXPECT_FALSE(m_source.fill({})); }

    [[nodiscard]] RandomSource &source() { return m_source; }
    [[nodiscard]] RandomSource &failingSource() { return m_failing; }

private:
    FailingOnceRandom m_source;
    FailingOnceRandom m_failing;
};

INSTANTIATE_TYPED_TEST_SUITE_P(OpenSsl, RandomSourceContract, RealGenerator);
INSTANTIATE_TYPED_TEST_SUITE_P(Counting, RandomSourceContract, CountingGenerator);
INSTANTIATE_TYPED_TEST_SUITE_P(FailsOnce, RandomSourceContract, GeneratorThatFailsOnce);

} // namespace
} // namespace quillhaven::test
