#include "Utilities/HpTimeLog.h"

#include "Utilities/Clock.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

void record(HpTimeLog& log, int times)
{
    for (int i = 0; i < times; ++i) {
        log.record();
    }
}

void waitFor(double seconds)
{
    const Utilities::Clock clock;
    while (clock.run() < seconds) {
    }
}

TEST(HpTimeLog, MeasuresFromStampToStamp)
{
    HpTimeLog log;
    EXPECT_TRUE(log.isEnabled());
    EXPECT_EQ(log.getIntervals().count(), 0u);
    const Utilities::Clock around;
    log.record();
    EXPECT_EQ(log.getIntervals().count(), 0u);
    log.record();
    const Utilities::Clock within;
    waitFor(0.01);
    const double least = within.run();
    log.record();
    const double most = around.run();
    const Utilities::TimeIntervals intervals = log.getIntervals();
    EXPECT_EQ(intervals.count(), 2u);
    EXPECT_GE(intervals.maximum(), least - 1e-6); // the clock's step
    EXPECT_LE(intervals.maximum(), most + 1e-6);
    EXPECT_EQ(log.getIntervals(1).count(), 1u);
    EXPECT_GE(log.getIntervals(1).minimum(), least - 1e-6); // the newest one
    EXPECT_EQ(log.getIntervals(0).count(), 0u);
}

TEST(HpTimeLog, APauseIsNoInterval)
{
    HpTimeLog log(100);
    record(log, 3);
    log.setEnabled(false);
    log.setEnabled(false);
    EXPECT_FALSE(log.isEnabled());
    record(log, 5);
    EXPECT_EQ(log.getRecordedCount(), 3u);
    waitFor(0.01);
    log.setEnabled(true);
    log.setEnabled(true);
    EXPECT_TRUE(log.isEnabled());
    record(log, 1);
    EXPECT_EQ(log.getIntervals().count(), 2u);
    log.setEnabled(true); // no pause
    record(log, 3);
    EXPECT_EQ(log.getIntervals().count(), 5u);
    log.setEnabled(false);
    log.setEnabled(true); // between two stamps, unseen by the thread that records
    record(log, 2);
    EXPECT_EQ(log.getIntervals().count(), 6u);
    EXPECT_EQ(log.getIntervals(3).count(), 2u); // the newest three, of which one was a pause
}

TEST(HpTimeLog, KeepsTheNewest)
{
    for (const std::size_t capacity : {0, 1, 2}) {
        HpTimeLog log(capacity);
        record(log, 7);
        EXPECT_EQ(log.getIntervals().count(), 1u);
        EXPECT_EQ(log.getRecordedCount(), 7u);
    }
    HpTimeLog log(10);
    record(log, 10);
    EXPECT_EQ(log.getIntervals().count(), 9u);
    EXPECT_EQ(log.getIntervals().toText().find("not kept"), std::string::npos);
    waitFor(0.01);
    record(log, 9);
    EXPECT_GE(log.getIntervals().maximum(), 0.01); // the long one is the oldest that is kept
    record(log, 1);
    EXPECT_EQ(log.getIntervals().count(), 9u);
    EXPECT_NE(log.getIntervals().toText().find("not kept                10\n"), std::string::npos);
    EXPECT_EQ(log.getIntervals(5).count(), 5u);
}

TEST(HpTimeLog, IsReadAndSwitchedWhileItRecords)
{
    // Large enough for the oldest stamps to be replaced while they are copied.
    constexpr std::size_t capacity = 50'000;
    HpTimeLog log(capacity);
    std::atomic<bool> done{false};
    const Utilities::Clock clock;
    std::thread recorder([&] {
        while (!done) {
            log.record();
        }
    });
    while (log.getRecordedCount() < 2 * capacity) {
        std::this_thread::yield();
    }
    for (int i = 0; i < 100; ++i) {
        const Utilities::TimeIntervals intervals = log.getIntervals();
        EXPECT_LT(intervals.count(), capacity);
        EXPECT_GE(intervals.minimum(), 0.0); // never from a newer stamp to an older one
        EXPECT_LE(intervals.maximum(), clock.run());
        log.setEnabled(i % 4 != 0);
    }
    done = true;
    recorder.join();
}

} // namespace
