// SPDX-License-Identifier: GPL-3.0-or-later

// The number of allocated bytes does not grow with the number of operations.

#include "support/EngineHarness.h"
#include "support/printLogger.h"

#include <malloc.h>

using namespace quillhaven;
using namespace quillhaven::test;

namespace {

size_t allocatedBytes()
{
    return mallinfo2().uordblks;
}

} // namespace

TEST(MemoryGrowth, TenThousandOperationsDoNotLeak)
{
    constexpr int warmUp = 500;
    constexpr int operations = 10'000;
    constexpr size_t caches = 64 * 1024; // of the libraries; a leak of 16 bytes per operation exceeds it
    setLogSink([](const QString &) {});
    TestPlatform services;
    EngineHarness engine(services);
    engine.protect(services.home.write(QStringLiteral("Desktop/a.txt"), "mine"));
    size_t before = 0;
    for (int i = 0; i < warmUp + operations; ++i) {
        if (i == warmUp) {
            before = allocatedBytes();
        }
        if (i % 2 == 0) {
            engine.unlock();
        } else {
            engine.lock();
        }
        services.panels.placeRequests.clear();
    }
    EXPECT_LE(allocatedBytes(), before + caches);
    setLogSink({});
}
