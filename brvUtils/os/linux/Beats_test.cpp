#include "brvUtils/os/PeriodicTimer.h"
#include "brvUtils/os/Thread.h"
#include "brvUtils/os/linux/Deadline.h"
#include "brvUtils/os/linux/EarlyWake.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <sched.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
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
    const auto take = [](void* context) {
        auto& all = *static_cast<Beats*>(context);
        all.begins.push_back(monotonicNanoseconds());
        if (all.begins.size() == longCall) {
            while (monotonicNanoseconds() < all.begins.back() + 10 * period) {
            }
            all.resumed = monotonicNanoseconds();
        }
        all.done = all.begins.size() >= 10;
    };
    PeriodicTimer* timer = nullptr;
    ASSERT_EQ(startPeriodicTimer(timer, 2, take, &beats), error::none);
    while (!beats.done) {
        yieldThread();
    }
    const std::uint64_t missed = missedBeats(timer);
    stopPeriodicTimer(timer);

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
    EXPECT_EQ(early.lead(), 50'000);
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

TEST(PeriodicTimer, HandsNoPriorityOnButToThreadsThatAskForIt)
{
    struct Started
    {
        std::atomic<bool> urgent{false};
        std::atomic<int> bare{-1};
        std::atomic<int> ours{-1};
    } started;
    PeriodicTimer* timer = nullptr;
    const auto look = [](void* context) {
        auto& found = *static_cast<Started*>(context);
        if (found.ours != -1) {
            return;
        }
        found.urgent = (sched_getscheduler(0) & ~SCHED_RESET_ON_FORK) == SCHED_RR;
        int bare = -1;
        std::thread([&bare] { bare = sched_getscheduler(0); }).join();
        found.bare = bare;
        std::promise<void> released;
        const ThreadStart thread = startThread([](void* go) { static_cast<std::promise<void>*>(go)->get_future().wait(); }, &released);
        const int priority = threadPriority(thread.thread);
        released.set_value();
        waitThread(thread.thread, infinite);
        found.ours = priority;
    };
    ASSERT_EQ(startPeriodicTimer(timer, 1, look, &started), error::none);
    while (started.ours == -1) {
        yieldThread();
    }
    stopPeriodicTimer(timer);
    if (!started.urgent) {
        GTEST_SKIP() << "this user may not have urgent threads";
    }
    EXPECT_EQ(started.bare, SCHED_OTHER);
    EXPECT_EQ(started.ours, highestPriority) << "a thread of ours begins where its starter is";
}

TEST(Thread, HasEndedInAForkedChild)
{
    std::promise<void> released;
    const ThreadStart started = startThread([](void* go) { static_cast<std::promise<void>*>(go)->get_future().wait(); }, &released);
    const pid_t child = fork();
    if (child == 0) {
        _exit(waitThread(started.thread, infinite).status == WaitStatus::signalled ? 0 : 1);
    }
    int status = -1;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    released.set_value();
    EXPECT_EQ(waitThread(started.thread, infinite).status, WaitStatus::signalled);
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
    // A sanitizer starts a thread of its own with the first one.
    std::thread([] {}).join();
    const int before = threadsOfThisProcess();
    for (int i = 0; i < 1000; ++i) {
        const ThreadStart started = startThread([](void*) {}, nullptr);
        ASSERT_EQ(started.error, error::none);
        waitThread(started.thread, infinite);
        PeriodicTimer* timer = nullptr;
        ASSERT_EQ(startPeriodicTimer(timer, 1000, [](void*) {}, nullptr), error::none);
        stopPeriodicTimer(timer);
    }
    // The last ones may still be on their way out.
    while (threadsOfThisProcess() > before) {
        yieldThread();
    }
}

} // namespace
