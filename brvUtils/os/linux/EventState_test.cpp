#include "brvUtils/os/Event.h"
#include "brvUtils/os/linux/EventState.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <thread>

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

BRV_CHILD(eventReserver)
{
    Event* event = openEvent(arguments[0].c_str(), false, false).event;
    childSay(eventState::tryReserve(*handleOf(event)) == eventState::Attempt::done ? "reserved" : "failed");
    childHear();
    return 0;
}

TEST(EventState, AReservationOfAKilledProcessIsTakenBack)
{
    const std::string name = uniqueName();
    Event* event = openEvent(name.c_str(), false, true).event;
    Child child("eventReserver", {name});
    child.expectLine("reserved");
    EXPECT_EQ(setEvent(event), error::none) << "a setter does not wait";
    child.kill();
    EXPECT_EQ(waitEvent(event, 0).status, WaitStatus::signalled);
    EXPECT_EQ(waitEvent(event, 0).status, WaitStatus::timedOut);
    closeEvent(event);
}

TEST(EventState, AStoppedReservationDoesNotStopAWaitWithALimit)
{
    const std::string name = uniqueName();
    Event* event = openEvent(name.c_str(), false, true).event;
    Child child("eventReserver", {name});
    child.expectLine("reserved");
    std::size_t index = 0;
    EXPECT_EQ(waitEvent(event, 0).status, WaitStatus::timedOut);
    EXPECT_EQ(waitEvent(event, 20).status, WaitStatus::timedOut);
    EXPECT_EQ(waitEvents(&event, 1, true, 20, &index).status, WaitStatus::timedOut);
    child.send("end");
    child.expectExit(0);
    EXPECT_EQ(waitEvents(&event, 1, true, 0, &index).status, WaitStatus::signalled);
    closeEvent(event);
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
