#include "brvUtils/os/Event.h"

#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

bool passes(Event* event, Milliseconds timeout = 0)
{
    return waitEvent(event, timeout).status == WaitStatus::signalled;
}

/// Events of this process, closed at the end.
struct Events
{
    explicit Events(const std::vector<bool>& manualReset)
    {
        for (const bool manual : manualReset) {
            list.push_back(openEvent(uniqueName().c_str(), manual, false).event);
        }
    }
    ~Events()
    {
        for (Event* event : list) {
            closeEvent(event);
        }
    }
    Event* operator[](std::size_t i) const { return list[i]; }
    WaitResult wait(bool all, Milliseconds timeout, std::size_t& index) const { return waitEvents(list.data(), list.size(), all, timeout, &index); }
    bool passes(bool all, std::size_t& index, Milliseconds timeout = 0) const { return wait(all, timeout, index).status == WaitStatus::signalled; }

    std::vector<Event*> list;
};

TEST(Event, AutoResetLetsOneThroughPerSet)
{
    const Events events({false});
    EXPECT_FALSE(passes(events[0]));
    setEvent(events[0]);
    setEvent(events[0]);
    EXPECT_TRUE(passes(events[0]));
    EXPECT_FALSE(passes(events[0], 10));
    setEvent(events[0]);
    resetEvent(events[0]);
    EXPECT_FALSE(passes(events[0]));
}

TEST(Event, ManualResetLetsEverybodyThroughUntilReset)
{
    const Events events({true});
    setEvent(events[0]);
    EXPECT_TRUE(passes(events[0]));
    EXPECT_TRUE(passes(events[0], 10));
    resetEvent(events[0]);
    EXPECT_FALSE(passes(events[0]));
}

TEST(Event, TheFirstOpenerFixesKindAndState)
{
    const std::string name = uniqueName();
    Event* manual = openEvent(name.c_str(), true, true).event;
    const EventOpening again = openEvent(name.c_str(), false, false);
    EXPECT_FALSE(again.created);
    EXPECT_TRUE(passes(again.event));
    EXPECT_TRUE(passes(manual));
    closeEvent(manual);
    closeEvent(again.event);
    EXPECT_EQ(openEvent(nullptr, true, true).error, error::invalidParameter);
    EXPECT_EQ(setEvent(nullptr), error::invalidHandle);
    EXPECT_EQ(resetEvent(nullptr), error::invalidHandle);
    EXPECT_EQ(waitEvent(nullptr, 0).error, error::invalidHandle);
}

BRV_CHILD(eventWaiter)
{
    Event* event = openEvent(arguments[0].c_str(), true, false).event;
    childSay("ready");
    while (childHear()) {
        childSay("waiting");
        childSay(passes(event, infinite) ? "passed" : "failed");
    }
    closeEvent(event);
    return 0;
}

/// A set that is reset at once still lets everybody through who was waiting; whether a process is waiting already cannot
/// be seen from outside, so that each round is repeated until both have passed.
TEST(Event, SetThenResetReleasesTheWaiters)
{
    const std::string name = uniqueName();
    Event* event = openEvent(name.c_str(), true, false).event;
    Child one("eventWaiter", {name});
    Child two("eventWaiter", {name});
    for (Child* child : {&one, &two}) {
        child->expectLine("ready");
        child->send("wait");
        child->expectLine("waiting");
    }
    std::atomic<bool> done{false};
    std::thread pulses([&] {
        while (!done) {
            setEvent(event);
            resetEvent(event);
            std::this_thread::yield();
        }
    });
    one.expectLine("passed");
    two.expectLine("passed");
    done = true;
    pulses.join();
    for (Child* child : {&one, &two}) {
        child->closeInput();
        child->expectExit(0);
    }
    closeEvent(event);
}

TEST(EventGroup, AnyGivesTheFirstSignalledInListOrder)
{
    const Events events({false, true, false});
    std::size_t index = 99;
    EXPECT_EQ(events.wait(false, 10, index).status, WaitStatus::timedOut);
    EXPECT_EQ(index, 99u);
    setEvent(events[2]);
    setEvent(events[1]);
    EXPECT_TRUE(events.passes(false, index));
    EXPECT_EQ(index, 1u);
    resetEvent(events[1]);
    EXPECT_TRUE(events.passes(false, index));
    EXPECT_EQ(index, 2u);
    EXPECT_FALSE(events.passes(false, index)) << "the signal was taken";
    std::thread later([&] { setEvent(events[0]); });
    EXPECT_TRUE(events.passes(false, index, infinite));
    EXPECT_EQ(index, 0u);
    later.join();
}

TEST(EventGroup, AllTakesNothingUntilItCanTakeAll)
{
    const Events events({false, true, false});
    std::size_t index = 99;
    setEvent(events[0]);
    setEvent(events[1]);
    EXPECT_FALSE(events.passes(true, index, 10));
    EXPECT_TRUE(passes(events[0])) << "the wait for all left it";
    setEvent(events[0]);
    std::thread later([&] { setEvent(events[2]); });
    EXPECT_TRUE(events.passes(true, index, infinite));
    EXPECT_EQ(index, 0u);
    later.join();
    EXPECT_FALSE(passes(events[0]));
    EXPECT_TRUE(passes(events[1])) << "manual reset stays";
    EXPECT_FALSE(passes(events[2]));
}

TEST(EventGroup, WrongListsAreErrors)
{
    const Events events(std::vector<bool>(65, true));
    std::size_t index = 99;
    EXPECT_EQ(events.wait(false, 0, index).error, error::invalidParameter);
    EXPECT_EQ(waitEvents(nullptr, 0, false, 0, &index).error, error::invalidParameter);
    Event* const twice[] = {events[0], events[0]};
    EXPECT_EQ(waitEvents(twice, 2, true, 0, &index).error, error::invalidParameter);
    Event* const withNull[] = {events[0], nullptr};
    EXPECT_EQ(waitEvents(withNull, 2, false, 0, &index).error, error::invalidHandle);
    setEvent(events[63]);
    EXPECT_EQ(waitEvents(events.list.data(), 64, false, 0, &index).status, WaitStatus::signalled);
    EXPECT_EQ(index, 63u);
}

/// Waits for all of the same two events by two threads, in opposite orders, while a third sets them: every pair of sets is
/// taken by one of them, none is lost and none is torn apart.
TEST(EventGroup, CompetingWaitsForAllLoseNothing)
{
    const Events events({false, false});
    const Events taken({false});
    constexpr int rounds = 2000;
    std::atomic<int> passed{0};
    const auto waiter = [&](std::size_t first) {
        Event* const order[] = {events[first], events[1 - first]};
        std::size_t index = 0;
        while (passed < rounds) {
            if (waitEvents(order, 2, true, 50, &index).status == WaitStatus::signalled) {
                ++passed;
                setEvent(taken[0]);
            }
        }
    };
    std::thread one(waiter, 0);
    std::thread two(waiter, 1);
    for (int i = 0; i < rounds; ++i) {
        setEvent(events[static_cast<std::size_t>(i % 2)]);
        setEvent(events[static_cast<std::size_t>(1 - i % 2)]);
        ASSERT_TRUE(passes(taken[0], 30'000)) << "round " << i;
    }
    one.join();
    two.join();
    EXPECT_EQ(passed, rounds);
}

// One auto-reset event under fire from two threads and two processes.

struct Hammered
{
    explicit Hammered(const std::string& name)
        : event(openEvent((name + "E").c_str(), false, false).event)
        , taken(openEvent((name + "T").c_str(), false, false).event)
        , over(openEvent((name + "O").c_str(), true, false).event)
    {
    }
    ~Hammered()
    {
        closeEvent(event);
        closeEvent(taken);
        closeEvent(over);
    }

    /// Passes until it is over. \return how often.
    int pass(bool handshake)
    {
        Event* const list[] = {event, over};
        int count = 0;
        for (bool odd = false;; odd = !odd) {
            std::size_t index = 0;
            // Both ways of waiting.
            if (odd && passes(event, 1)) {
                index = 0;
            } else if (waitEvents(list, 2, false, infinite, &index).status != WaitStatus::signalled || index == 1) {
                return count;
            }
            ++count;
            if (handshake) {
                setEvent(taken);
            }
        }
    }

    Event* event;
    Event* taken;
    Event* over;
};

BRV_CHILD(eventHammer)
{
    Hammered hammered(arguments[0]);
    childSay("ready");
    childSay(std::to_string(hammered.pass(arguments[1] == "handshake")));
    return 0;
}

int hammer(bool handshake, int sets)
{
    const std::string name = uniqueName();
    Hammered hammered(name);
    const std::string way = handshake ? "handshake" : "free";
    Child one("eventHammer", {name, way});
    Child two("eventHammer", {name, way});
    one.expectLine("ready");
    two.expectLine("ready");
    std::atomic<int> passed{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] { passed += hammered.pass(handshake); });
    }
    int lost = 0;
    for (int i = 0; i < sets; ++i) {
        setEvent(hammered.event);
        if (handshake && !passes(hammered.taken, 30'000)) {
            ++lost;
        }
    }
    setEvent(hammered.over);
    for (std::thread& thread : threads) {
        thread.join();
    }
    const int total = passed + std::stoi(one.readLine()) + std::stoi(two.readLine());
    one.expectExit(0);
    two.expectExit(0);
    // A signal that nobody took before it was over.
    const int left = passes(hammered.event) ? 1 : 0;
    EXPECT_EQ(lost, 0);
    return total + left;
}

TEST(Event, NeverMoreWakeUpsThanSets)
{
    const int passed = hammer(false, 20'000);
    EXPECT_LE(passed, 20'000);
    EXPECT_GE(passed, 1);
}

TEST(Event, WithAHandshakePerSetNoneIsLost)
{
    EXPECT_EQ(hammer(true, 5'000), 5'000);
}

} // namespace
