#include "brvUtils/os/PeriodicTimer.h"
#include "brvUtils/os/Thread.h"
#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/EarlyWake.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace {

using namespace brvUtils::os;

TEST(PeriodicTimer, KeepsItsGridAndCountsWhatPassedDuringALongCall)
{
    constexpr std::int64_t period = 2'000'000; // ns
    constexpr std::size_t longCall = 3;
    struct Beats
    {
        std::vector<std::int64_t> begins;
        std::int64_t resumed = 0;
        std::atomic<bool> done{false};
    } beats;
    const std::int64_t before = monotonicNanoseconds();
    const PeriodicTimerStart started = startPeriodicTimer(
        2,
        [](void* context) {
            auto& all = *static_cast<Beats*>(context);
            all.begins.push_back(monotonicNanoseconds());
            if (all.begins.size() == longCall) {
                while (monotonicNanoseconds() < all.begins.back() + 10 * period) {
                }
                all.resumed = monotonicNanoseconds();
            }
            all.done = all.begins.size() >= 10;
        },
        &beats);
    while (!beats.done) {
        yieldThread();
    }
    const std::uint64_t missed = missedBeats(started.timer);
    stopPeriodicTimer(started.timer);

    EXPECT_GE(missed, 9u);
    for (std::size_t i = 0; i < 10; ++i) {
        EXPECT_GE(beats.begins[i] - before, static_cast<std::int64_t>(i + 1) * period) << "none comes early";
    }
    // No burst makes up for them: behind the long call the next beat of the grid comes, and not those before.
    EXPECT_GE(beats.begins[9] - before, static_cast<std::int64_t>(10 + 9) * period);
    EXPECT_GE(beats.begins[longCall], beats.resumed);
}

TEST(EarlyWake, FollowsWhatMostWakingsTake)
{
    EarlyWake early(10'000'000);
    EXPECT_EQ(early.lead(), 0);
    for (int i = 0; i < 1000; ++i) {
        early.wokenAfter(i % 100 == 0 ? 5'000'000 : 40'000);
    }
    EXPECT_GT(early.lead(), 38'000);
    EXPECT_LT(early.lead(), 50'000) << "the rare very late one counts for little";
    for (int i = 0; i < 1000; ++i) {
        early.wokenAfter(5'000);
    }
    EXPECT_LT(early.lead(), 10'000);
}

TEST(EarlyWake, StaysBelowATwentiethOfThePeriod)
{
    EarlyWake early(1'000'000);
    for (int i = 0; i < 1000; ++i) {
        early.wokenAfter(900'000);
    }
    EXPECT_EQ(early.lead(), 50'000);
}

int threadsOfThisProcess()
{
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        ++count;
    }
    return count;
}

TEST(Thread, LeavesNothingInTheSystem)
{
    const int before = threadsOfThisProcess();
    for (int i = 0; i < 1000; ++i) {
        const ThreadStart started = startThread([](void*) {}, nullptr);
        ASSERT_EQ(started.error, error::none);
        waitThread(started.thread, infinite);
        const PeriodicTimerStart timer = startPeriodicTimer(1000, [](void*) {}, nullptr);
        ASSERT_EQ(timer.error, error::none);
        stopPeriodicTimer(timer.timer);
    }
    // The last ones may still be on their way out.
    while (threadsOfThisProcess() > before) {
        yieldThread();
    }
}

} // namespace
