#include "brvUtils/time/TimedSemaphore.h"

#include "Utilities/Clock.h"
#include "Utilities/HpTimeLog.h"
#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace brvUtils;

constexpr double patience = 30.0; // seconds

TEST(TimedSemaphore, LetsThroughOncePerBeatOfItsTimer)
{
    Utilities::Clock clock;
    TimedSemaphore beats(0.002, false, TimedSemaphore::MODE_TIMER);
    EXPECT_TRUE(beats.ask(0.0)) << "it starts free";
    for (int i = 0; i < 10; ++i) {
        EXPECT_TRUE(beats.ask(patience));
    }
    EXPECT_GE(clock.run(), 0.017) << "the grid of the system's timer may begin up to a millisecond before";
    beats.pause();
    beats.ask(0.0);
    EXPECT_FALSE(beats.ask(0.0)) << "one beat at most is kept";
    beats.run();
    EXPECT_TRUE(beats.ask(patience));
}

TEST(TimedSemaphore, PausedFromTheStartWaitsForRun)
{
    TimedSemaphore beats(0.001, true, TimedSemaphore::MODE_TIMER);
    EXPECT_TRUE(beats.ask(0.0));
    EXPECT_FALSE(beats.ask(0.02));
    beats.run();
    EXPECT_TRUE(beats.ask(patience));
}

class PolledBeats : public testing::TestWithParam<TimedSemaphore::TimerMode>
{
};

TEST_P(PolledBeats, KeepADeadlinePerPeriodAndSkipNone)
{
    TimedSemaphore beats(0.0005, false, GetParam());
    Utilities::Clock clock;
    EXPECT_TRUE(beats.ask(0.0)) << "the first deadline is the start";
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(beats.ask(0.0));
    }
    EXPECT_GE(clock.run(), 19 * 0.0005) << "the clock of the beats began a little earlier";

    beats.run();
    clock.init();
    while (clock.run() < 0.005) {
    }
    // Ten deadlines are over: the eleventh comes as late after them as if nobody had dawdled.
    for (int i = 0; i < 12; ++i) {
        EXPECT_TRUE(beats.ask(0.0));
    }
    EXPECT_GE(clock.run(), 10 * 0.0005);
    beats.pause();
    EXPECT_TRUE(beats.ask(0.0)) << "there is nothing to pause";
}

INSTANTIATE_TEST_SUITE_P(All, PolledBeats,
    testing::Values(TimedSemaphore::MODE_YIELD, TimedSemaphore::MODE_SPIN, TimedSemaphore::MODE_TIMER /* too short for a timer */));

TEST(TimedSemaphore, OfAnUnknownModeLetsNobodyThrough)
{
    TimedSemaphore beats(0.001, false, static_cast<TimedSemaphore::TimerMode>(3));
    EXPECT_FALSE(beats.ask(0.0));
    beats.pause();
}

TEST(TimedSemaphore, TellsThatThereWasNothingToPause)
{
    const brvTesting::CapturedOutput captured;
    {
        TimedSemaphore beats(0.001, false, TimedSemaphore::MODE_TIMER);
        beats.pause();
        EXPECT_EQ(captured.err(), "");
        beats.pause();
        EXPECT_EQ(captured.err(), "Error while stopping timer\n");
    }
    EXPECT_EQ(captured.err(), "Error while stopping timer\nError while stopping timer\n");
    {
        TimedSemaphore never(std::numeric_limits<double>::quiet_NaN(), false, TimedSemaphore::MODE_TIMER);
        EXPECT_TRUE(never.ask(0.0));
        EXPECT_FALSE(never.ask(0.0));
    }
    EXPECT_EQ(captured.err(), "Error while stopping timer\nError while stopping timer\nError while stopping timer\n");
}

TEST(TimedSemaphore, RecordsItsBeatsWhileTheLogIsEnabled)
{
    HpTimeLog log;
    TimedSemaphore beats(0.001, true, TimedSemaphore::MODE_TIMER);
    beats.ask(0.0);
    beats.setTimeLogger(&log);
    log.setEnabled(true);
    beats.run();
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(beats.ask(patience));
    }
    beats.pause();
    const auto recorded = log.getRecordedCount();
    EXPECT_GE(recorded, 5u);

    log.setEnabled(false);
    beats.run();
    beats.ask(patience);
    EXPECT_TRUE(beats.ask(patience));
    EXPECT_EQ(log.getRecordedCount(), recorded);
    beats.setTimeLogger(nullptr);
    EXPECT_TRUE(beats.ask(patience));
}

} // namespace
