#include "Utilities/Clock.h"

#include <gtest/gtest.h>

namespace Utilities {
namespace {

void waitUntil(const Clock& clock, double seconds)
{
    while (clock.run() < seconds) {
    }
}

TEST(Clock, RunsOnRestartsAtZeroAndIsCopiedAsItStands)
{
    Clock clock;
    double before = clock.run();
    EXPECT_GE(before, 0.0);
    for (int i = 0; i < 1000; ++i) {
        const double now = clock.run();
        ASSERT_GE(now, before);
        before = now;
    }
    waitUntil(clock, 0.05);

    const Clock copy = clock;
    Clock sinceRestart;
    clock.init();
    const double afterRestart = clock.run();
    EXPECT_LE(afterRestart, sinceRestart.run());
    EXPECT_GE(copy.run(), 0.05 + afterRestart);
    waitUntil(copy, copy.run() + 1e-6); // steps are fine enough for this to be seen
}

} // namespace
} // namespace Utilities
