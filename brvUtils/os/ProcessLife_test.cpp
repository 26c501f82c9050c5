#include "brvUtils/os/ProcessLife.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

BRV_CHILD(livingProcess)
{
    childSay(std::to_string(currentProcessId()));
    childHear();
    return 0;
}

TEST(ProcessLife, LastsFromTheStartToTheEnd)
{
    EXPECT_TRUE(processIsAlive(currentProcessId()));
    Child killed("livingProcess");
    Child ending("livingProcess");
    for (Child* child : {&killed, &ending}) {
        child->expectLine(std::to_string(child->id()));
        EXPECT_TRUE(processIsAlive(child->id()));
    }
    killed.kill();
    ending.closeInput();
    ending.expectExit(0);
    // On Windows the handles of both are still open.
    EXPECT_FALSE(processIsAlive(killed.id()));
    EXPECT_FALSE(processIsAlive(ending.id()));
}

TEST(ProcessLife, NumbersThatAreNoProcesssAreDead)
{
    for (const std::uint32_t id : {0U, (1U << 22) + 1, (1U << 29) + currentProcessId(), std::numeric_limits<std::uint32_t>::max()}) {
        EXPECT_FALSE(processIsAlive(id)) << id;
    }
}

} // namespace
