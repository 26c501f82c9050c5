#include "brvUtils/os/Process.h"

#include <gtest/gtest.h>

#include <future>
#include <sched.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace brvUtils::os {
namespace {

/// A thread that was there before and waits to be asked.
class OtherThread
{
public:
    ~OtherThread()
    {
        end_.set_value();
        thread_.join();
    }

    pid_t id() { return id_.get_future().get(); }

private:
    std::promise<pid_t> id_;
    std::promise<void> end_;
    std::thread thread_ { [this] {
        id_.set_value(gettid());
        end_.get_future().wait();
    } };
};

ProcessorMask lowestBit(ProcessorMask mask)
{
    return mask & (~mask + 1);
}

TEST(Process, BindsThreadsThatRunAlready)
{
    ProcessorMask process = 0;
    ProcessorMask system = 0;
    ASSERT_EQ(processAffinity(process, system), error::none);
    EXPECT_EQ(process & ~system, 0U);
    OtherThread other;
    const pid_t thread = other.id();
    ASSERT_EQ(setProcessAffinity(lowestBit(process)), error::none);
    cpu_set_t set;
    ASSERT_EQ(sched_getaffinity(thread, sizeof set, &set), 0);
    EXPECT_EQ(CPU_COUNT(&set), 1);
    ASSERT_EQ(processAffinity(process, system), error::none);
    EXPECT_EQ(process, lowestBit(process));
}

TEST(Process, GivesItsPriorityToThreadsThatRunAlready)
{
    OtherThread other;
    const pid_t thread = other.id();
    if (setPriorityClass(PriorityClass::high) == error::none) {
        EXPECT_EQ(getpriority(PRIO_PROCESS, static_cast<id_t>(thread)), -10);
    }
    if (setPriorityClass(PriorityClass::realTime) == error::none) {
        EXPECT_EQ(sched_getscheduler(thread), SCHED_RR);
    } else {
        EXPECT_NE(sched_getscheduler(getpid()), SCHED_RR) << "a refusal is told";
    }
}

TEST(Process, RefusesProcessorsThatTheComputerLacks)
{
    EXPECT_EQ(setProcessAffinity(0), error::invalidParameter);
    EXPECT_EQ(setThreadAffinity(0), error::invalidParameter);
}

} // namespace
} // namespace brvUtils::os
