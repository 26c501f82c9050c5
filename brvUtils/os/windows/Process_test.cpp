#include "brvUtils/os/Process.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace brvUtils::os {
namespace {

TEST(Process, IsBoundByTheSystem)
{
    ProcessorMask process = 0;
    ProcessorMask system = 0;
    ASSERT_EQ(processAffinity(process, system), error::none);
    ASSERT_NE(process, 0U);
    EXPECT_EQ(process & ~system, 0U);
    const ProcessorMask lowest = process & (~process + 1);
    ASSERT_EQ(setProcessAffinity(lowest), error::none);
    ASSERT_EQ(setThreadAffinity(lowest), error::none);
    DWORD_PTR bound = 0;
    DWORD_PTR all = 0;
    ASSERT_TRUE(GetProcessAffinityMask(GetCurrentProcess(), &bound, &all));
    EXPECT_EQ(bound, lowest);
    EXPECT_EQ(all, system);
    EXPECT_EQ(SetThreadAffinityMask(GetCurrentThread(), bound), lowest) << "gives the mask from before";
}

TEST(Process, HasThePriorityClassInTheSystem)
{
    ASSERT_EQ(setPriorityClass(PriorityClass::high), error::none);
    EXPECT_EQ(GetPriorityClass(GetCurrentProcess()), static_cast<DWORD>(HIGH_PRIORITY_CLASS));
    ASSERT_EQ(setPriorityClass(PriorityClass::realTime), error::none);
    const DWORD priority = GetPriorityClass(GetCurrentProcess());
    EXPECT_TRUE(priority == REALTIME_PRIORITY_CLASS || priority == HIGH_PRIORITY_CLASS) << "the next best without the right: " << priority;
}

TEST(Process, RefusesProcessorsThatTheComputerLacks)
{
    EXPECT_EQ(setProcessAffinity(0), error::invalidParameter);
    EXPECT_EQ(setThreadAffinity(0), error::invalidParameter);
}

} // namespace
} // namespace brvUtils::os
