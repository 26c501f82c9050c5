#include "FramePacer.h"

#include <gtest/gtest.h>

using namespace suite;
using namespace std::chrono_literals;

TEST(FramePacer, framesFallDueEvenlyAndNeverDrift)
{
    const FramePacer pacer(200.0);
    EXPECT_EQ(pacer.framesDue(0ns), 0);
    EXPECT_EQ(pacer.framesDue(4999us), 0);
    EXPECT_EQ(pacer.framesDue(5001us), 1);
    EXPECT_NEAR(static_cast<double>(pacer.framesDue(24h)), 24 * 3600 * 200.0, 1.0);
}

TEST(FramePacer, looksAgainWhenTheNextFrameIsDueOrAMillisecondLater)
{
    const FramePacer slow(200.0);
    for (auto elapsed = 0ns; elapsed < 1s;) {
        const auto next = slow.nextLook(elapsed);
        EXPECT_EQ(slow.framesDue(next), slow.framesDue(elapsed) + 1);
        elapsed = next;
    }
    const FramePacer fast(100000.0);
    EXPECT_EQ(fast.nextLook(0ns), 1ms);
    EXPECT_EQ(fast.framesDue(1ms), 100);
}
