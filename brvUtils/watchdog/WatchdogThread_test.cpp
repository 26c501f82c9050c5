#include "brvUtils/ipc/SemaphoreWin32.h"
#include "brvUtils/watchdog/ScriptedSemaphore_test.h"
#include "brvUtils/watchdog/WatchdogClient.h"
#include "brvUtils/watchdog/WatchdogServer.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/Deadline.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace brvUtils;
using namespace brvTesting;
using namespace std::chrono_literals;

TEST(WatchdogThread, DestructionWaitsForALongCycle)
{
    SemaphoreScripts::reset();
    std::promise<void> waiting;
    std::atomic<bool> waited{false};
    std::atomic<bool> deletedInWait{false};
    SemaphoreScripts::watched.ask = [&, first = true](double) mutable {
        if (first) {
            first = false;
            waiting.set_value();
            std::this_thread::sleep_for(1300ms); // longer than one attempt to stop the thread
            waited = true;
        }
        return true;
    };
    SemaphoreScripts::watched.end = [&] { deletedInWait = !waited; };
    {
        WatchdogClient client(SemaphoreScripts::make, "module", 1.3, 3600.0, 2.0);
        client.startMonitoring();
        client.startMonitoring();
        waiting.get_future().wait();
    }
    EXPECT_TRUE(waited);
    EXPECT_FALSE(deletedInWait);
}

TEST(WatchdogThread, DestructionEndsAWaitWithoutLimit)
{
    const Deadline deadline("a wait without limit");
    SemaphoreScripts::reset();
    std::promise<void> waiting;
    std::promise<void> freed;
    SemaphoreScripts::watched.ask = [&](double) {
        waiting.set_value();
        freed.get_future().wait();
        return true;
    };
    SemaphoreScripts::watched.free = [&, first = true]() mutable {
        if (first) {
            first = false;
            freed.set_value();
        }
    };
    WatchdogClient client(SemaphoreScripts::make, "module", -1.0, 3600.0, 2.0);
    client.startMonitoring();
    waiting.get_future().wait();
}

TEST(WatchdogThread, EndsWhereverItsCycleIs)
{
    const Deadline deadline("many clients");
    const std::string name = uniqueName();
    const CapturedOutput captured; // of the waits in vain
    WatchdogServer server(SemaphoreWin32::New, name);
    for (int round = 0; round < 200; ++round) {
        WatchdogClient client(SemaphoreWin32::New, name, round % 2 == 0 ? -1.0 : 0.001, 0.001, 0.5);
        client.startMonitoring();
        server.signal();
        std::this_thread::sleep_for(std::chrono::microseconds(round));
        client.isAlive();
    }
}

TEST(WatchdogThread, AnswersAnyThreadWhileItWatches)
{
    SemaphoreScripts::reset();
    SemaphoreScripts::watched.ask = [](double) { return true; }; // as busy as can be
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
    client.startMonitoring();
    const auto askUntilAlive = [&client] {
        while (!client.isAlive()) {
            std::this_thread::yield();
        }
    };
    const Deadline deadline("two that ask");
    std::thread other(askUntilAlive);
    askUntilAlive();
    other.join();
}

TEST(WatchdogThread, DoesNotFloodTheErrorStreamWhenItsSemaphoreFails)
{
    const std::string name(300, 'n'); // too long
    const CapturedOutput captured;
    {
        WatchdogClient client(SemaphoreWin32::New, name, -1.0, 0.1, 0.5);
        client.startMonitoring();
        std::this_thread::sleep_for(100ms);
        EXPECT_FALSE(client.isAlive());
    }
    const std::string err = captured.err();
    EXPECT_LT(std::count(err.begin(), err.end(), '\n'), 100);
}

BRV_CHILD(clientOfABadSemaphore)
{
    SemaphoreScripts::watched.ask = [](double) -> bool { throw std::runtime_error("of its own"); };
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 0.1, 0.5);
    client.startMonitoring();
    childHear();
    return 0;
}

TEST(WatchdogThread, FailureSaysSoAndEndsTheProcess)
{
    Child child("clientOfABadSemaphore");
    child.expectAbort();
    EXPECT_NE(child.err().find("Serious error in watchdog system\n"), std::string::npos) << child.err();
}

} // namespace
