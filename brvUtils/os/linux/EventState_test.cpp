#include "brvUtils/os/Event.h"
#include "brvUtils/os/linux/EventState.h"
#include "brvUtils/os/linux/EventTransaction.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

/// Returns when somebody sleeps on the event.
void awaitWaiter(Event* event)
{
    while ((handleOf(event)->state->load() & eventState::hasWaiters) == 0) {
        std::this_thread::yield();
    }
}

TEST(EventState, OneSetThenResetReleasesWhoWasWaiting)
{
    Event* event = openEvent(uniqueName().c_str(), true, false).event;
    for (int round = 0; round < 200; ++round) {
        std::thread waiter([&] { EXPECT_EQ(waitEvent(event, infinite).status, WaitStatus::signalled); });
        awaitWaiter(event);
        setEvent(event);
        resetEvent(event);
        waiter.join();
    }
    closeEvent(event);
}

/// Goes as far into a wait for all of "<name>0" and "<name>1" as the second argument says.
BRV_CHILD(waiterForAll)
{
    Handle& first = *handleOf(openEvent((arguments[0] + "0").c_str(), false, false).event);
    Handle& second = *handleOf(openEvent((arguments[0] + "1").c_str(), false, false).event);
    EventTransaction transaction(first);
    bool good = transaction.reserve(first);
    if (arguments[1] != "reserved one") {
        good = transaction.reserve(second) && transaction.decide() && good;
    }
    if (arguments[1] == "took one") {
        transaction.finish(first);
    }
    childSay(good ? "there" : "failed");
    childHear();
    childSay(transaction.decide() ? "decided" : "aborted");
    transaction.finish(first);
    transaction.finish(second);
    childSay("finished");
    childHear();
    return 0;
}

/// Two signalled events, and a process in the midst of a wait for both.
struct WaitForAllBeside
{
    std::string name = uniqueName();
    Event* events[2] = {openEvent((name + "0").c_str(), false, true).event, openEvent((name + "1").c_str(), false, true).event};
    Child child;

    explicit WaitForAllBeside(const std::string& progress)
        : child("waiterForAll", {name, progress})
    {
        child.expectLine("there");
    }
    ~WaitForAllBeside()
    {
        closeEvent(events[0]);
        closeEvent(events[1]);
    }
    bool take(int i) { return waitEvent(events[i], 0).status == WaitStatus::signalled; }
};

TEST(EventTransaction, OfAKilledProcessTakesAllSignalsOrNone)
{
    for (const char* progress : {"reserved one", "decided", "took one"}) {
        WaitForAllBeside beside(progress);
        beside.child.kill();
        const bool left = std::string(progress) == "reserved one";
        EXPECT_EQ(beside.take(0), left) << progress;
        EXPECT_EQ(beside.take(1), left) << progress;
    }
}

TEST(EventTransaction, OfAKilledProcessSwallowsNoLaterSignal)
{
    for (const char* progress : {"reserved one", "decided", "took one"}) {
        WaitForAllBeside beside(progress);
        beside.child.kill();
        setEvent(beside.events[0]);
        setEvent(beside.events[1]);
        EXPECT_TRUE(beside.take(0) && beside.take(1)) << progress;
        EXPECT_FALSE(beside.take(0) || beside.take(1)) << progress;
    }
}

TEST(EventTransaction, OfAStoppedProcessHoldsUpNobody)
{
    std::size_t index = 0;
    {
        WaitForAllBeside beside("reserved one");
        EXPECT_EQ(waitEvents(beside.events, 2, true, 0, &index).status, WaitStatus::signalled);
        EXPECT_FALSE(beside.take(0));
        beside.child.send("go on");
        beside.child.expectLine("aborted");
    }
    {
        WaitForAllBeside beside("reserved one");
        EXPECT_TRUE(beside.take(0));
        setEvent(beside.events[0]);
        beside.child.send("go on");
        beside.child.expectLine("aborted");
        EXPECT_TRUE(beside.take(0));
    }
    {
        WaitForAllBeside beside("decided");
        EXPECT_FALSE(beside.take(0));
        setEvent(beside.events[0]);
        setEvent(beside.events[1]);
        beside.child.send("go on");
        beside.child.awaitLine("finished");
        EXPECT_TRUE(beside.take(0) && beside.take(1)) << "later signals are not its own";
    }
    WaitForAllBeside beside("reserved one");
    EXPECT_EQ(resetEvent(beside.events[0]), error::none);
    EXPECT_FALSE(beside.take(0));
    EXPECT_TRUE(beside.take(1));
}

BRV_CHILD(opener)
{
    openEvent(arguments[0].c_str(), false, false);
    childSay("there");
    childHear();
    return 0;
}

TEST(EventTransaction, AnAbandonedOneIsEndedForTheNextProcessOfTheRecord)
{
    // No process of another test shall have the ticket.
    const TemporaryFolder folder;
    const EnvironmentGuard nameSpace("STUDIO_IPC_NAMESPACE", (folder.path() / "objects").string());
    WaitForAllBeside beside("took one");
    Handle& second = *handleOf(beside.events[1]);
    const auto record = static_cast<std::uint32_t>(second.state->load() >> 54);
    beside.child.kill();
    TableHeader& header = second.table->header;
    header.lastTicket = second.table->processes[record].process.ticket - 1;
    Child next("opener", {beside.name});
    next.expectLine("there");
    EXPECT_EQ(second.table->processes[record].process.processId, next.id());
    EXPECT_EQ(second.state->load() & (eventState::reserved | eventState::signalled), 0U);
    EXPECT_EQ(second.table->processes[record].transaction & 3U, 0U);
}

/// Threads share the one transaction of their process.
TEST(EventTransaction, OfSeveralThreadsTakeTurns)
{
    Event* const events[] = {openEvent(uniqueName().c_str(), false, false).event, openEvent(uniqueName().c_str(), false, false).event};
    constexpr int rounds = 3000;
    std::atomic<int> taken{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            std::size_t index = 0;
            while (taken < rounds) {
                if (waitEvents(events, 2, true, 1, &index).status == WaitStatus::signalled) {
                    ++taken;
                }
            }
        });
    }
    for (int i = 0; i < rounds; ++i) {
        setEvent(events[0]);
        setEvent(events[1]);
        while (taken <= i) {
            std::this_thread::yield();
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(taken, rounds);
    closeEvent(events[0]);
    closeEvent(events[1]);
}

/// Polls for all of two signalled manual-reset events while another thread does the same: neither may see the other's
/// reservation as a missing signal.
TEST(EventState, PollsForAllDoNotDisturbEachOther)
{
    Event* const events[] = {openEvent(uniqueName().c_str(), true, true).event, openEvent(uniqueName().c_str(), true, true).event};
    Event* const opposite[] = {events[1], events[0]};
    const auto poll = [](Event* const* list) {
        std::size_t index = 0;
        for (int i = 0; i < 20'000; ++i) {
            ASSERT_EQ(waitEvents(list, 2, true, 0, &index).status, WaitStatus::signalled) << i;
        }
    };
    std::thread other([&] { poll(opposite); });
    poll(events);
    other.join();
    closeEvent(events[0]);
    closeEvent(events[1]);
}

} // namespace
