#include "brvUtils/os/PeriodicTimer.h"

#include "brvUtils/os/Thread.h"

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

TEST(PeriodicTimer, BeatsUntilItIsStoppedAndNotOnceMore)
{
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> count{0};
        const PeriodicTimerStart started = startPeriodicTimer(1, countUp, &count);
        ASSERT_EQ(started.error, error::none);
        await(count, 5);
        stopPeriodicTimer(started.timer);
        const int atStop = count;
        const PeriodicTimerStart other = startPeriodicTimer(1, [](void*) {}, nullptr);
        stopPeriodicTimer(other.timer);
        EXPECT_EQ(count, atStop);
    }
}

TEST(PeriodicTimer, IsStoppedFromWithinItsOwnCall)
{
    struct Owner
    {
        std::promise<PeriodicTimer*> timer;
        std::shared_future<PeriodicTimer*> known{timer.get_future()};
        std::atomic<int> calls{0};
    } owner;
    const PeriodicTimerStart started = startPeriodicTimer(
        1,
        [](void* context) {
            auto& self = *static_cast<Owner*>(context);
            stopPeriodicTimer(self.known.get());
            ++self.calls;
        },
        &owner);
    owner.timer.set_value(started.timer);
    await(owner.calls, 1);
    // Time enough for another call, if there were one.
    std::atomic<int> others{0};
    const PeriodicTimerStart other = startPeriodicTimer(1, countUp, &others);
    await(others, 5);
    stopPeriodicTimer(other.timer);
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
    const PeriodicTimerStart started = startPeriodicTimer(
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
        stopPeriodicTimer(started.timer);
        return call.running.load();
    });
    EXPECT_EQ(stopped.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    call.released.set_value();
    EXPECT_FALSE(stopped.get());
}

TEST(PeriodicTimer, IsStoppedAtOnceHoweverLongItsPeriod)
{
    std::atomic<int> count{0};
    const PeriodicTimerStart started = startPeriodicTimer(60'000, countUp, &count);
    ASSERT_EQ(started.error, error::none);
    stopPeriodicTimer(started.timer);
    EXPECT_EQ(count, 0);
}

TEST(PeriodicTimer, RefusesWhatIsNoPeriod)
{
    EXPECT_EQ(startPeriodicTimer(0, countUp, nullptr).error, error::invalidParameter);
    EXPECT_EQ(startPeriodicTimer(1, nullptr, nullptr).error, error::invalidParameter);
    stopPeriodicTimer(nullptr);
    EXPECT_EQ(missedBeats(nullptr), 0u);
}

} // namespace
