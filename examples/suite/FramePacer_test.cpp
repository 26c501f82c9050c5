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

TEST(FramePacer, nextLookIsWhenTheNextFrameIsDue)
{
    const FramePacer pacer(200.0);
    for (auto elapsed = 0ns; elapsed < 1s;) {
        const auto next = pacer.nextLook(elapsed);
        EXPECT_EQ(pacer.framesDue(next), pacer.framesDue(elapsed) + 1);
        elapsed = next;
    }
}

TEST(FramePacer, fastFramesAreDoneTogether)
{
    const FramePacer pacer(100000.0);
    EXPECT_EQ(pacer.nextLook(0ns), 1ms);
    EXPECT_EQ(pacer.framesDue(1ms), 100);
}
