#include "brvUtils/watchdog/WatchdogClient.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/watchdog/ScriptedSemaphore_test.h"
#include "testing/CapturedOutput.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

using namespace brvUtils;
using namespace brvTesting;

constexpr double never = -1.0;

/// Cycles that the test runs itself, with a semaphore that answers as it is told: no time goes by unless it should.
class WatchdogVerdict : public testing::Test
{
protected:
    void SetUp() override
    {
        SemaphoreScripts::reset();
        SemaphoreScripts::watched.ask = [this](double) {
            if (sleep > 0.0) {
                std::this_thread::sleep_for(std::chrono::duration<double>(sleep));
            }
            return signalled;
        };
    }

    static bool verdictAfter(WatchdogClient& client, int cycles)
    {
        while (cycles-- > 0) {
            EXPECT_TRUE(client.runInThread());
        }
        return client.isAlive();
    }

    bool signalled = true;
    double sleep = 0.0; // seconds each wait lasts
};

TEST_F(WatchdogVerdict, IsDeadBeforeSomebodyAsked)
{
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
    EXPECT_FALSE(verdictAfter(client, 3)) << "the first answer";
    EXPECT_FALSE(client.isAlive()) << "no cycle since";
    EXPECT_TRUE(verdictAfter(client, 1));
}

TEST_F(WatchdogVerdict, IsDeadAtTheFirstWaitInVain)
{
    std::string waits;
    SemaphoreScripts::watched.ask = [&](double timeout) {
        waits += std::to_string(timeout) + " ";
        return signalled;
    };
    WatchdogClient client(SemaphoreScripts::make, "module", 0.001, 3600.0, 2.0);
    client.isAlive();
    EXPECT_TRUE(verdictAfter(client, 1));
    signalled = false;
    EXPECT_FALSE(verdictAfter(client, 1));
    EXPECT_FALSE(verdictAfter(client, 3));
    signalled = true;
    EXPECT_TRUE(verdictAfter(client, 1)) << "the mean was in the band all the time";
    EXPECT_EQ(waits, "0.001000 0.001000 0.001000 0.001000 0.001000 0.001000 ");
}

TEST_F(WatchdogVerdict, IsDeadWhenTheMeanOfTenIntervalsIsTooShort)
{
    // Ten intervals of an hour are assumed; each that takes no time makes the mean a tenth of an hour shorter.
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 0.55);
    client.isAlive();
    EXPECT_TRUE(verdictAfter(client, 1));
    EXPECT_TRUE(verdictAfter(client, 4)) << "half an hour";
    EXPECT_FALSE(verdictAfter(client, 1)) << "two fifths";
    EXPECT_FALSE(verdictAfter(client, 20));
}

TEST_F(WatchdogVerdict, IsDeadWhileTheMeanIsTooLongAndThenAliveAgain)
{
    WatchdogClient client(SemaphoreScripts::make, "module", never, 0.02, 1.0);
    sleep = 0.5; // more than ten of twice the period
    client.isAlive();
    EXPECT_FALSE(verdictAfter(client, 1)) << "signalled, but too late";
    sleep = 0.0;
    EXPECT_FALSE(verdictAfter(client, 9)) << "the long one is still among the ten";
    int cycles = 0;
    while (!verdictAfter(client, 1) && cycles < 100000) { // at once, unless the computer is held up
        ++cycles;
    }
    EXPECT_TRUE(client.isAlive());
}

TEST_F(WatchdogVerdict, IsDeadForSettingsThatMakeNoSense)
{
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [period, tolerance] : {std::pair(notANumber, 2.0), {3600.0, notANumber}, {3600.0, -0.1}, {-1.0, 0.5}}) {
        WatchdogClient client(SemaphoreScripts::make, "module", 1.0, period, tolerance);
        client.isAlive();
        EXPECT_FALSE(verdictAfter(client, 2)) << period << ' ' << tolerance;
    }
}

TEST_F(WatchdogVerdict, ThatCannotBeReadIsDeadForEver)
{
    int asked = 0;
    SemaphoreScripts::protection.ask = [&](double timeout) {
        EXPECT_EQ(timeout, 10.0);
        ++asked;
        return false;
    };
    const WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
    const CapturedOutput captured;
    EXPECT_FALSE(client.isAlive());
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(client.isAlive());
    EXPECT_EQ(asked, 1) << "no second wait";
    EXPECT_EQ(captured.err(), "Watchdog : Cannot access the state of one process, dead assumed\n");
}

TEST_F(WatchdogVerdict, ThatCannotBeChangedIsDeadForEver)
{
    bool accessible = true;
    SemaphoreScripts::protection.ask = [&](double) { return accessible; };
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
    client.isAlive();
    EXPECT_TRUE(verdictAfter(client, 1));
    accessible = false;
    {
        const CapturedOutput captured;
        try {
            client.runInThread();
            FAIL() << "nothing thrown";
        } catch (const SemaphoreSynchroError& error) {
            EXPECT_STREQ(error.what(), "Watchdog : Cannot update the state of the process");
        }
        EXPECT_EQ(captured.err(), "Serious error in watchdog system\n");
    }
    accessible = true;
    EXPECT_FALSE(verdictAfter(client, 1));
}

TEST_F(WatchdogVerdict, IsDeadForEverWhenTheSemaphoreThrew)
{
    WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
    client.isAlive();
    EXPECT_TRUE(verdictAfter(client, 1));
    SemaphoreScripts::watched.ask = [](double) -> bool { throw std::out_of_range("of its own"); };
    const CapturedOutput captured;
    EXPECT_THROW(client.runInThread(), std::out_of_range);
    EXPECT_FALSE(client.isAlive());
    EXPECT_EQ(captured.err(), "Serious error in watchdog system\n");
}

TEST_F(WatchdogVerdict, IsDeadWithoutSemaphores)
{
    for (SemaphoreScript* const script : {&SemaphoreScripts::watched, &SemaphoreScripts::protection}) {
        script->absent = true;
        WatchdogClient client(SemaphoreScripts::make, "module", 1.0, 3600.0, 2.0);
        client.startMonitoring();
        EXPECT_FALSE(client.isAlive());
        script->absent = false;
    }
}

} // namespace
