#include "brvUtils/time/TimerWin32.h"

#include "brvUtils/os/PeriodicTimer.h"
#include "testing/CapturedOutput.h"
#include "testing/Deadline.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <limits>
#include <memory>
#include <mutex>
#include <ostream>
#include <set>
#include <thread>

namespace {

using namespace brvUtils;

/// Takes note of who calls.
struct Calls
{
    std::atomic<int> count{0};
    std::mutex mutex;
    std::set<std::thread::id> threads;

    static void take(void* self)
    {
        auto& calls = *static_cast<Calls*>(self);
        {
            const std::lock_guard lock(calls.mutex);
            calls.threads.insert(std::this_thread::get_id());
        }
        ++calls.count;
    }
    std::size_t sources()
    {
        const std::lock_guard lock(mutex);
        return threads.size();
    }
    void awaitMore(int more) const
    {
        for (const int least = count + more; count < least;) {
            std::this_thread::yield();
        }
    }
};

struct Case
{
    double period;
    unsigned long mode;
    std::size_t sources;

    friend void PrintTo(const Case& tested, std::ostream* out) { *out << "mode " << tested.mode << ", " << tested.period * 1e6 << " us"; }
};

class TimerModes : public testing::TestWithParam<Case>
{
};

TEST_P(TimerModes, BeatFromTheirSourcesAndStopOneByOne)
{
    const auto& [period, mode, sources] = GetParam();
    Calls calls;
    TimerWin32 timer(period, Calls::take, &calls, mode);
    EXPECT_FALSE(timer.pause());
    EXPECT_EQ(calls.count, 0);
    EXPECT_TRUE(timer.run());
    while (calls.sources() < sources) {
        std::this_thread::yield();
    }
    calls.awaitMore(5);
    EXPECT_EQ(calls.sources(), sources);
    EXPECT_TRUE(timer.run()) << "a running one starts again, all of it";
    calls.awaitMore(5);
    EXPECT_TRUE(timer.pause());
    if (sources == 2) {
        calls.awaitMore(3);
        EXPECT_TRUE(timer.pause());
    }
    const int atStop = calls.count;
    EXPECT_FALSE(timer.pause());
    EXPECT_TRUE(timer.run()) << "a paused one, too";
    calls.awaitMore(3);
    EXPECT_GE(calls.count, atStop + 3);
}

INSTANTIATE_TEST_SUITE_P(All, TimerModes,
    testing::Values(Case{0.001, 0, 1}, Case{0.002, 3, 1}, Case{0.002, 4, 2}, Case{0.002, 5, 2}, Case{0.002, 6, 1}, Case{0.002, 7, 1},
        Case{0.002, 4'000'000'000, 1}, Case{0.0005, 0, 1}, Case{0.0005, 4, 1}, Case{0.0005, 6, 1}));

TEST(TimerWin32, WithoutCallOrPeriodNeverBeats)
{
    TimerWin32 nothing(0.01, nullptr, nullptr, 0);
    EXPECT_FALSE(nothing.run());
    EXPECT_FALSE(nothing.pause());
    Calls calls;
    for (const unsigned long mode : {0UL, 4UL, 6UL, 7UL}) {
        for (const double period : {0.0, -0.01, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(), 1e9}) {
            TimerWin32 timer(period, Calls::take, &calls, mode);
            EXPECT_TRUE(timer.run()) << period;
            EXPECT_FALSE(timer.pause()) << period;
        }
    }
    EXPECT_EQ(calls.count, 0);
}

TEST(TimerWin32, PollsWhereTheSystemsTimerCannotBeSet)
{
    constexpr double period = 4'000'000.0; // s
    os::PeriodicTimer* probe = nullptr;
    const bool possible = os::startPeriodicTimer(probe, 4'002'000'000U, [](void*) {}, nullptr) == os::error::none;
    os::stopPeriodicTimer(probe);

    const brvTesting::CapturedOutput captured;
    TimerWin32 timer(period, [](void*) {}, nullptr, 0);
    EXPECT_TRUE(timer.run());
    EXPECT_EQ(captured.err(), possible ? "" : "Error: Unable to set timer function. Use High performance timer instead (CPU consummer).\n");
    EXPECT_TRUE(timer.pause());
    EXPECT_FALSE(timer.pause());
}

class TimerFromWithin : public testing::TestWithParam<Case>
{
};

TEST_P(TimerFromWithin, MayBeRunAgainAndDestroyedByItsOwnCallEvenTheFirst)
{
    struct Owner
    {
        bool runsAgain;
        std::unique_ptr<TimerWin32> timer;
        std::atomic<bool> destroyed{false};

        static void call(void* context)
        {
            auto& self = *static_cast<Owner*>(context);
            if (self.runsAgain) {
                self.runsAgain = false;
                EXPECT_TRUE(self.timer->run());
                return;
            }
            self.timer.reset();
            self.destroyed = true;
        }
    };
    const auto& [period, mode, sources] = GetParam();
    ASSERT_EQ(sources, 1u) << "two would call at the same time";
    for (int round = 0; round < 40; ++round) {
        Owner owner{round % 2 == 0, nullptr};
        owner.timer = std::make_unique<TimerWin32>(period, Owner::call, &owner, mode);
        TimerWin32& timer = *owner.timer;
        EXPECT_TRUE(timer.run());
        while (!owner.destroyed) {
            std::this_thread::yield();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(SystemAndPollers, TimerFromWithin,
    testing::Values(Case{0.001, 0, 1}, Case{0.001, 6, 1}, Case{0.000001, 6, 1}, Case{0.0001, 7, 1}));

/// A call that stays until it is let go on, and those that come meanwhile.
struct LongCall
{
    std::promise<void> begun;
    std::promise<void> released;
    std::atomic<int> calls{0};
    std::atomic<bool> inside{false};

    static void take(void* context)
    {
        auto& self = *static_cast<LongCall*>(context);
        if (++self.calls == 1) {
            self.inside = true;
            self.begun.set_value();
            self.released.get_future().wait();
            self.inside = false;
        }
    }
};

TEST(TimerWin32, RunsAgainBesideAPollerThatIsStillInItsLastCall)
{
    const brvTesting::Deadline deadline("a poller that does not come back");
    LongCall call;
    auto timer = std::make_unique<TimerWin32>(0.001, LongCall::take, &call, 7);
    timer->run();
    call.begun.get_future().wait();
    EXPECT_FALSE(timer->pause()) << "it did not end within a second";
    EXPECT_TRUE(timer->run());
    while (call.calls < 3) {
        std::this_thread::yield();
    }
    EXPECT_TRUE(call.inside);

    auto destroyed = std::async(std::launch::async, [&] {
        timer.reset();
        return !call.inside;
    });
    EXPECT_EQ(destroyed.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    call.released.set_value();
    EXPECT_TRUE(destroyed.get()) << "nothing is deleted before the last call has returned";
}

} // namespace
