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
    childSay(eventState::tryReserve(*handleOf(event)) ? "reserved" : "failed");
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

} // namespace
