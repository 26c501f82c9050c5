#include "brvUtils/time/TimeFrame.h"

#include <gtest/gtest.h>

namespace brvUtils {
namespace {

TEST(TimeFrame, CountsFramesOfAFixedStep)
{
    TimeFrame frame(false, 0.01);
    EXPECT_EQ(frame.time, 0.0);
    EXPECT_EQ(frame.step, 0.0);
    EXPECT_EQ(frame.frameCount, 0u);
    frame.init();
    EXPECT_FALSE(frame.frameTimer.stopped());
    for (unsigned int i = 1; i <= 10; ++i) {
        const double before = frame.time;
        frame.run();
        EXPECT_EQ(frame.step, 0.01);
        EXPECT_EQ(frame.frameCount, i);
        EXPECT_EQ(frame.time, frame.frameTimer.getCurrentTime());
        EXPECT_GE(frame.time, before);
    }
    frame.pause();
    EXPECT_TRUE(frame.frameTimer.stopped());
    const double paused = frame.frameTimer.getCurrentTime();
    EXPECT_EQ(frame.frameCount, 10u);
    frame.start();
    EXPECT_EQ(frame.time, paused);
    EXPECT_EQ(frame.frameCount, 10u);
    frame.init();
    EXPECT_EQ(frame.time, 0.0);
    EXPECT_EQ(frame.frameCount, 0u);
}

TEST(TimeFrame, MeasuresTheStep)
{
    TimeFrame frame(true, 0.01);
    frame.init();
    EXPECT_EQ(frame.step, 0.01);
    frame.start();
    EXPECT_EQ(frame.step, 0.05);
    frame.run();
    EXPECT_EQ(frame.step, 0.05); // the first step
    for (int i = 0; i < 10; ++i) {
        const double before = frame.time;
        frame.run();
        EXPECT_NEAR(frame.step, frame.time - before, 1e-12);
    }
    frame.run();
    TimeFrame copy = frame;
    EXPECT_EQ(copy.time, frame.time);
    copy.run();
    EXPECT_EQ(copy.frameCount, frame.frameCount + 1);
    EXPECT_GE(copy.time, frame.time);
}

} // namespace
} // namespace brvUtils
