#include "brvUtils/time/FrameTimer.h"

#include "Scheduling/ExecutionClock.h"
#include "Scheduling/Synchronization.h"
#include "brvUtils/core/Errors.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace brvUtils {
namespace {

constexpr long long most = std::numeric_limits<long long>::max();
constexpr long long least = std::numeric_limits<long long>::min();

struct FakeClock : ExecutionClock
{
    void start() override {}
    void stop() override {}
    long long getCount() const override { return count; }
    long long getTicksPerSecond() const override { return rate; }

    long long count = 0;
    long long rate = 1000;
};

/// Running, with the last step and the time since the start as given.
void expectTicks(const FrameTimer& timer, long long delta, long long simulation, double rate = 1000.0)
{
    EXPECT_EQ(timer.getInternalDeltaCount(), delta);
    EXPECT_EQ(timer.getInternalSimulationCount(), simulation);
    EXPECT_DOUBLE_EQ(timer.getDeltaTime(), static_cast<double>(delta) / rate);
    EXPECT_DOUBLE_EQ(timer.getCurrentTime(), static_cast<double>(simulation) / rate);
}

void expectFrame(const FrameTimer& timer, double current, double delta)
{
    EXPECT_EQ(timer.getCurrentTime(), current);
    EXPECT_EQ(timer.getDeltaTime(), delta);
}

/// Until the computer's clock has gone on.
void runOn(FrameTimer& timer)
{
    for (const double before = timer.getCurrentTime(); timer.getCurrentTime() <= before;) {
        timer.run();
    }
}

TEST(FrameTimer, OnTheComputersClockCountsFromTheInitialTime)
{
    const Utilities::Clock around;
    FrameTimer timer(0.02, 10.0, nullptr);
    EXPECT_TRUE(timer.stopped());
    expectFrame(timer, 10.0, 0.02);
    timer.run();
    EXPECT_FALSE(timer.stopped());
    expectFrame(timer, 10.0, 0.02);
    timer.run();
    EXPECT_GE(timer.getCurrentTime(), 10.0);
    EXPECT_EQ(timer.getDeltaTime(), 0.02); // the first step
    double sum = timer.getCurrentTime();
    for (int i = 0; i < 100; ++i) {
        timer.run();
        EXPECT_GE(timer.getDeltaTime(), 0.0);
        sum += timer.getDeltaTime();
    }
    EXPECT_NEAR(timer.getCurrentTime(), sum, 1e-9);
    EXPECT_LE(timer.getCurrentTime(), 10.0 + around.run());
    EXPECT_EQ(timer.getInternalSimulationCount() + timer.getInternalDeltaCount() + timer.getInternalRawCount(), 0);

    timer.init(); // while it runs
    expectFrame(timer, 10.0, 0.02);
    timer.setInitTime(-3.0);
    expectFrame(timer, 10.0, 0.02); // until the next start
    timer.init();
    expectFrame(timer, -3.0, 0.02);
}

TEST(FrameTimer, OnTheComputersClockGoesOnWhereItPaused)
{
    FrameTimer timer; // as in arrays
    expectFrame(timer, 0.0, 0.05);
    timer.init();
    runOn(timer);
    const double last = timer.getCurrentTime();
    timer.pause();
    EXPECT_TRUE(timer.stopped());
    const double paused = timer.getCurrentTime();
    EXPECT_GE(paused, last);
    const Utilities::Clock waited;
    while (waited.run() < 0.05) {
    }
    const Utilities::Clock sinceRestart;
    timer.run();
    EXPECT_FALSE(timer.stopped());
    expectFrame(timer, paused, 0.05);
    timer.run();
    EXPECT_GE(timer.getCurrentTime(), paused);
    EXPECT_LE(timer.getCurrentTime(), paused + sinceRestart.run());
    EXPECT_EQ(timer.getDeltaTime(), 0.05);
}

TEST(FrameTimer, CopiesGoOnFromTheSameTimeOnTheirOwn)
{
    FrameTimer original(0.02, 10.0, nullptr);
    original.run();
    runOn(original);
    FrameTimer copy = original;
    FrameTimer assigned;
    assigned = original;
    for (FrameTimer* each : {&copy, &assigned}) {
        expectFrame(*each, original.getCurrentTime(), original.getDeltaTime());
        EXPECT_FALSE(each->stopped());
        runOn(*each);
        EXPECT_LT(original.getCurrentTime(), each->getCurrentTime());
    }
    copy.pause();
    EXPECT_FALSE(original.stopped());

    FakeClock clock;
    FrameTimer counting(0.02, 0.0, &clock);
    counting.run();
    clock.count = 30;
    counting.run();
    copy = counting;
    clock.count = 40;
    copy.run();
    expectTicks(copy, 10, 40);
    expectTicks(counting, 30, 30);
}

TEST(FrameTimer, OnAnExecutionClockCountsTicksBothWays)
{
    FakeClock clock;
    clock.count = 5000;
    FrameTimer timer(0.05, 7.0, &clock);
    EXPECT_EQ(timer.getInternalRawCount(), 0);
    timer.run();
    expectFrame(timer, 7.0, 0.05);
    EXPECT_EQ(timer.getInternalRawCount(), 5000);
    timer.run();
    expectFrame(timer, 7.0, 0.05); // no tick

    clock.count = 5020;
    timer.run();
    expectTicks(timer, 20, 20);
    timer.run();
    expectTicks(timer, 20, 20);
    clock.count = 5000;
    timer.run();
    expectTicks(timer, -21, -1);
    EXPECT_EQ(timer.getInternalRawCount(), 5000);

    clock.count = 6000; // passes
    timer.pause();
    EXPECT_EQ(timer.getInternalRawCount(), 6000);
    EXPECT_EQ(timer.getCurrentTime(), -0.001);
    clock.count = 7000; // while it pauses
    timer.run();
    expectFrame(timer, 7.0, 0.05);
    clock.count = 7001;
    timer.run();
    expectTicks(timer, 1, 0);

    timer.setInitTime(-2.5019);
    EXPECT_EQ(timer.getInternalSimulationCount(), -2501);
    EXPECT_EQ(timer.getInternalDeltaCount(), 0);
    EXPECT_EQ(timer.getCurrentTime(), 0.0);
    clock.count = 7011;
    clock.rate = 100;
    timer.run();
    expectTicks(timer, 10, -2491, 100.0);
}

TEST(FrameTimer, TakesTheClockOfASynchronization)
{
    FakeClock clock;
    Synchronization with(&clock);
    Synchronization without;
    FrameTimer timers[] = {FrameTimer(0.02, 0.0, &with), FrameTimer(0.02, 0.0, &without),
        FrameTimer(0.02, 0.0, static_cast<Synchronization*>(nullptr))};
    clock.count = 17;
    for (FrameTimer& timer : timers) {
        timer.run();
        timer.run();
        EXPECT_EQ(timer.getInternalRawCount(), &timer == timers ? 17 : 0);
        EXPECT_EQ(timer.getDeltaTime(), 0.02);
    }
}

TEST(FrameTimer, TellsTicksInUnits)
{
    const struct
    {
        long long ticks;
        long long rate;
        long long expected[3];
    } cases[] = {
        {1500, 1000, {1, 1500, 1500000}},
        {-1500, 1000, {-1, -1500, -1500000}},
        {1999, 3000, {0, 666, 666333}},
        {-1999, 3000, {0, -666, -666333}},
        {1999, -3000, {0, -666, -666333}},
        {most, 1000, {most / 1000, most, most}},
        {least, 1000, {least / 1000, least, least}},
        {most, 10'000'000, {922337203685, 922337203685477, 922337203685477580}}, // the product does not fit
        {least, 10'000'000, {-922337203685, -922337203685477, -922337203685477580}},
        {least, 1'000'000, {-9223372036854, -9223372036854775, least}}, // the least number, exactly
        {most, -1, {-most, least, least}},
        {least, least, {1, 1000, 1000000}},
        {most, least, {0, -999, -999999}},
        {least + 1, most, {-1, -1000, -1000000}},
    };
    for (const auto& each : cases) {
        FakeClock clock;
        FrameTimer timer(0.02, 0.0, &clock);
        timer.run();
        clock.rate = each.rate;
        clock.count = each.ticks < 0 ? each.ticks + 1 : each.ticks; // a step back is one longer
        timer.run();
        for (int i = 0; i < 3; ++i) {
            const brv::t_unit unit = static_cast<brv::t_unit>(44 + i);
            EXPECT_EQ(timer.getCurrentTime(unit), each.expected[i]) << each.ticks << " of " << each.rate << ' ' << brv::toText(unit);
            EXPECT_EQ(timer.getDeltaTime(unit), each.expected[i]) << each.ticks << " of " << each.rate << ' ' << brv::toText(unit);
        }
    }
}

TEST(FrameTimer, RefusesOtherUnitsAndUnitsWithoutTicks)
{
    FakeClock clock;
    FrameTimer timer(0.02, 0.0, &clock);
    for (const int unit : {0, 43, 47, -1}) {
        try {
            timer.getCurrentTime(static_cast<brv::t_unit>(unit));
            ADD_FAILURE() << unit;
        } catch (const std::invalid_argument& error) {
            EXPECT_EQ(error.what(), "Unable to convert time to the unit: unit " + std::to_string(unit));
        }
    }
    clock.rate = 0;
    EXPECT_THROW(timer.getDeltaTime(brv::second), ProgrammingError);
    EXPECT_THROW(FrameTimer().getCurrentTime(brv::second), ProgrammingError);
}

TEST(FrameTimer, BearsCountsAndTimesAtTheLimits)
{
    FakeClock clock;
    clock.count = least;
    FrameTimer timer(0.02, 0.0, &clock);
    timer.run();
    clock.count = most;
    timer.run();
    EXPECT_EQ(timer.getInternalDeltaCount(), -1); // gone round
    clock.count = least;
    timer.run();
    EXPECT_EQ(timer.getInternalRawCount(), least);
    const struct
    {
        double time;
        long long expected;
    } cases[] = {{1e300, most}, {-1e300, least}, {std::nan(""), 0}, {std::numeric_limits<double>::infinity(), most}, {-0.9e-3, 0}};
    for (const auto& each : cases) {
        timer.setInitTime(each.time);
        EXPECT_EQ(timer.getInternalSimulationCount(), each.expected) << each.time;
    }
}

} // namespace
} // namespace brvUtils
