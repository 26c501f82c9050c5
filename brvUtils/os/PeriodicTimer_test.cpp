#include "brvUtils/os/PeriodicTimer.h"

#include "brvUtils/os/Thread.h"
#include "testing/Deadline.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

namespace {

using namespace brvUtils::os;

void await(const std::atomic<int>& count, int least)
{
    while (count < least) {
        yieldThread();
    }
}

void countUp(void* count)
{
    ++*static_cast<std::atomic<int>*>(count);
}

PeriodicTimer* start(std::uint32_t milliseconds, void (*call)(void*), void* context)
{
    PeriodicTimer* timer = nullptr;
    EXPECT_EQ(startPeriodicTimer(timer, milliseconds, call, context), error::none);
    return timer;
}

TEST(PeriodicTimer, BeatsUntilItIsStoppedAndNotOnceMore)
{
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> count{0};
        PeriodicTimer* const started = start(1, countUp, &count);
        await(count, 5);
        stopPeriodicTimer(started);
        const int atStop = count;
        PeriodicTimer* const other = start(1, [](void*) {}, nullptr);
        stopPeriodicTimer(other);
        EXPECT_EQ(count, atStop);
    }
}

TEST(PeriodicTimer, IsStoppedFromWithinItsOwnCall)
{
    struct Owner
    {
        PeriodicTimer* timer = nullptr;
        std::atomic<int> calls{0};
    } owner;
    const auto stopItself = [](void* context) {
        auto& self = *static_cast<Owner*>(context);
        stopPeriodicTimer(self.timer); // is there before the first call
        ++self.calls;
    };
    ASSERT_EQ(startPeriodicTimer(owner.timer, 1, stopItself, &owner), error::none);
    await(owner.calls, 1);
    // Time enough for another call, if there were one.
    std::atomic<int> others{0};
    PeriodicTimer* const other = start(1, countUp, &others);
    await(others, 5);
    stopPeriodicTimer(other);
    EXPECT_EQ(owner.calls, 1);
}

TEST(PeriodicTimer, StoppingWaitsForTheCallThatIsRunning)
{
    struct Call
    {
        std::promise<void> begun;
        std::promise<void> released;
        std::atomic<int> calls{0};
        std::atomic<bool> running{false};
    } call;
    PeriodicTimer* const started = start(
        1,
        [](void* context) {
            auto& self = *static_cast<Call*>(context);
            if (++self.calls == 1) {
                self.running = true;
                self.begun.set_value();
                self.released.get_future().wait();
                self.running = false;
            }
        },
        &call);
    call.begun.get_future().wait();
    auto stopped = std::async(std::launch::async, [&] {
        stopPeriodicTimer(started);
        return call.running.load();
    });
    EXPECT_EQ(stopped.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    call.released.set_value();
    EXPECT_FALSE(stopped.get());
}

TEST(PeriodicTimer, IsStoppedAtOnceHoweverLongItsPeriod)
{
    const brvTesting::Deadline deadline("the end of a timer of a minute");
    std::atomic<int> count{0};
    PeriodicTimer* const started = start(60'000, countUp, &count);
    stopPeriodicTimer(started);
    EXPECT_EQ(count, 0);
}

TEST(PeriodicTimer, RefusesWhatIsNoPeriod)
{
    PeriodicTimer* none = nullptr;
    EXPECT_EQ(startPeriodicTimer(none, 0, countUp, nullptr), error::invalidParameter);
    EXPECT_EQ(startPeriodicTimer(none, 1, nullptr, nullptr), error::invalidParameter);
    EXPECT_EQ(none, nullptr);
    stopPeriodicTimer(nullptr);
    EXPECT_EQ(missedBeats(nullptr), 0u);
}

} // namespace
