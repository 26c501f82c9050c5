#include "brvUtils/ipc/ConfigurationPortManager_test.h"

#include "brvUtils/ipc/EventWin32.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/os/ProcessLife.h"
#include "brvUtils/os/Semaphore.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"

#include <gmock/gmock.h>

#include <chrono>
#include <limits>
#include <optional>
#include <string>

namespace portTests {
namespace {

using namespace brvTesting;
using brvUtils::os::currentProcessId;
using testing::IsEmpty;

using Manager = brvUtils::ConfigurationPortManager;

/// Takes ports and has them when it ends.
BRV_CHILD(portHolder)
{
    Ports ports;
    Manager* manager = Manager::getInstance();
    childSay(manager != nullptr && manager->allocate(std::stoul(arguments[0]), ports) ? "holding" : "failed");
    childHear();
    return 0;
}

BRV_CHILD(bystander)
{
    childHear();
    return 0;
}

TEST_F(ConfigurationPortManager, ShowsWhoHasPortsWithoutTheGuard)
{
    EXPECT_THAT(Manager::look(), IsEmpty());
    allocate(1);
    Child holder("portHolder", {"2"});
    holder.awaitLine("holding");
    auto* const guard = brvUtils::os::openSemaphore(guardName, true).semaphore;
    ASSERT_EQ(brvUtils::os::waitSemaphore(guard, 0).status, brvUtils::os::WaitStatus::signalled);
    std::vector<brvUtils::PortHolder> holders = Manager::look();
    ASSERT_EQ(holders.size(), 3u);
    EXPECT_EQ(holders[0].process, currentProcessId());
    EXPECT_EQ(holders[2].port, 25101);
    EXPECT_EQ(holders[2].process, holder.id());
    EXPECT_EQ(holders[2].program.substr(0, 10), "ports_test");
    holder.kill();
    holders = Manager::look();
    ASSERT_EQ(holders.size(), 3u) << "looking frees nothing";
    EXPECT_TRUE(holders[0].alive && !holders[2].alive);
    brvUtils::os::releaseSemaphore(guard);
    brvUtils::os::closeSemaphore(guard);
}

TEST_F(ConfigurationPortManager, GivesTheLowestFreePorts)
{
    EXPECT_EQ(allocate(3), (Ports{25099, 25100, 25101}));
    EXPECT_EQ(Manager::getInstance(), &manager());
    Table table;
    std::vector<std::uint32_t> expected(portCount);
    std::fill_n(expected.begin(), 3, currentProcessId());
    EXPECT_EQ(table.values(), expected);

    // Another process has this number now, whoever had it when the port was given.
    const Child other("bystander");
    table[4] = other.id();
    EXPECT_EQ(allocate(2), (Ports{25102, 25104}));
    EXPECT_TRUE(manager().release());
    expected.assign(portCount, 0);
    expected[4] = other.id();
    EXPECT_EQ(table.values(), expected) << "all are given back, and nothing else";
    EXPECT_TRUE(manager().release()) << "there may be none";
    EXPECT_EQ(table.values(), expected);
}

TEST_F(ConfigurationPortManager, GivesAllOrNothing)
{
    EXPECT_THAT(allocate(0), IsEmpty());
    EXPECT_EQ(allocate(1), Ports{25099});
    Table table;
    const auto before = table.values();
    EXPECT_THAT(allocate(portCount), IsEmpty());
    EXPECT_THAT(allocate(portCount + 1), IsEmpty());
    EXPECT_THAT(allocate(std::numeric_limits<size_t>::max()), IsEmpty());
    EXPECT_EQ(table.values(), before);
    EXPECT_EQ(allocate(portCount - 1).back(), 25300);
    EXPECT_THAT(allocate(1), IsEmpty());
}

TEST_F(ConfigurationPortManager, GivesPortsOfTheDeadAgain)
{
    Child killed("portHolder", {"2"}, {{"STUDIO_INSTANCE", "I1"}});
    killed.awaitLine("holding");
    Child ending("portHolder", {"1"}, {{"STUDIO_INSTANCE", "I2"}});
    ending.awaitLine("holding");
    EXPECT_EQ(allocate(1), Ports{25102}) << "all instances share the ports";
    Table table;
    killed.kill();
    EXPECT_EQ(allocate(1), Ports{25099});
    EXPECT_EQ(table[1], 0u);
    ending.closeInput();
    ending.expectExit(0);
    EXPECT_TRUE(manager().release());
    EXPECT_EQ(table.values(), std::vector<std::uint32_t>(portCount));
}

TEST_F(ConfigurationPortManager, GivesBackItsPortsWhenDeleted)
{
    allocate(2);
    Table table;
    delete &manager();
    EXPECT_EQ(table[0], 0u);
    EXPECT_EQ(allocate(1), Ports{25099}) << "there is a new one";
}

BRV_CHILD(killedInside)
{
    brvUtils::SemaphoreWin32 guard(guardName, true, false);
    Table table;
    const bool taken = guard.ask(-1.0);
    table[0] = currentProcessId();
    childSay(taken ? "inside" : "failed");
    childHear();
    return 0;
}

TEST_F(ConfigurationPortManager, IsNotStoppedByWhoDiedInside)
{
    if (!brvUtils::os::deadTakersAreKnown()) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    const brvUtils::SemaphoreWin32 guard(guardName, true, false); // lasts when the child is gone
    for (const bool first : {true, false}) {
        Child child("killedInside");
        child.awaitLine("inside");
        child.kill();
        EXPECT_EQ(allocate(1), Ports{25099}) << "getInstance met it: " << first;
        EXPECT_TRUE(manager().release());
    }
}

TEST_F(ConfigurationPortManager, WorksOnATableOfAnotherSize)
{
    for (const size_t size : {size_t{4}, size_t{100'000}}) { // segments are whole pages, so that the small one has room
        Table table(size);
        table[portCount] = 0xFFFF'FFFF;
        table[0] = 0xFFFF'FFFF;
        EXPECT_EQ(allocate(portCount).size(), portCount);
        EXPECT_EQ(table[portCount], 0xFFFF'FFFF);
        delete &manager();
    }
}

TEST_F(ConfigurationPortManager, IsNotHadWithoutTableOrGuard)
{
    const CapturedOutput captured;
    {
        const brvUtils::SemaphoreWin32 taken(tableName, true, false);
        EXPECT_EQ(Manager::getInstance(), nullptr);
        EXPECT_EQ(captured.err(), "Unable to create port management shm.\n");
    }
    std::optional<brvUtils::EventWin32> taken(std::in_place, guardName, true, true);
    ASSERT_EQ(Manager::getInstance(), nullptr);
    EXPECT_EQ(captured.err(), "Unable to create port management shm.\nUnable to create semaphore for port management shm.\n");
    taken.reset();
    EXPECT_EQ(allocate(1), Ports{25099}) << "the next call tries again, and the guard was freed";
}

BRV_CHILD(late)
{
    Ports ports{1};
    Manager* manager = arguments[0] != "getInstance" ? Manager::getInstance() : nullptr;
    childSay("ready");
    childHear();
    if (arguments[0] == "getInstance") {
        return Manager::getInstance() == nullptr ? 0 : 1;
    }
    return arguments[0] == "allocate" ? manager->allocate(1, ports) || !ports.empty() : manager->release();
}

TEST_F(ConfigurationPortManager, WaitsForTheGuardButNotForEver)
{
    constexpr std::chrono::seconds enough(55);
    const std::string timeout = std::string("Error waiting semaphore ") + guardName + ": WAIT_TIMEOUT\n";
    Child getting("late", {"getInstance"});
    Child allocating("late", {"allocate"});
    Child releasing("late", {"release"});
    for (Child* child : {&getting, &allocating, &releasing}) {
        child->awaitLine("ready");
        child->setDeadline(enough);
    }
    brvUtils::SemaphoreWin32 guard(guardName, true, false);
    ASSERT_TRUE(guard.ask(1.0));
    for (Child* child : {&getting, &allocating, &releasing}) {
        child->send("go");
        child->closeInput();
    }
    for (Child* child : {&getting, &allocating, &releasing}) {
        child->expectExit(0);
    }
    EXPECT_EQ(getting.err(), timeout);
    EXPECT_EQ(allocating.err(), timeout);
    EXPECT_EQ(releasing.err(), timeout + "Timeout while waiting for access to port management shm.\n");
    guard.free();
}

} // namespace
} // namespace portTests
