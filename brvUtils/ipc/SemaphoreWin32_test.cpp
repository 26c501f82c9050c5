#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/CriticalSection.h"
#include "brvUtils/ipc/EventWin32.h"
#include "brvUtils/ipc/SemaphoreWin32.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace brvUtils;
using namespace brvTesting;

std::unique_ptr<ISemaphore> makeSemaphore(const std::string& name, bool initiallyFree = true, bool withInstance = true)
{
    return std::unique_ptr<ISemaphore>(SemaphoreWin32::New(name.c_str(), initiallyFree, withInstance));
}

TEST(SemaphoreWin32, IsTakenOnceAndFreedOnce)
{
    const std::string name = uniqueName();
    const auto one = makeSemaphore(name, false);
    const auto other = makeSemaphore(name, true);
    EXPECT_FALSE(other->ask(0.0)) << "the first creator decides";
    EXPECT_TRUE(one->free());
    EXPECT_FALSE(one->free());
    EXPECT_TRUE(other->ask(-1.0));
}

TEST(SemaphoreWin32, ReportsTimeOutsButNotThoseOfPolls)
{
    const std::string name = uniqueName();
    const auto semaphore = makeSemaphore(name, false);
    const CapturedOutput captured;
    EXPECT_FALSE(semaphore->ask(0.0));
    EXPECT_EQ(captured.err(), "");
    EXPECT_FALSE(semaphore->ask(0.02));
    EXPECT_FALSE(semaphore->ask(0.0005)) << "less than a millisecond polls, but is no poll";
    const std::string line = "Error waiting semaphore " + name + ": WAIT_TIMEOUT\n";
    EXPECT_EQ(captured.err(), line + line);
    EXPECT_EQ(captured.out(), "");
}

TEST(SemaphoreWin32, WithoutANameIsPrivateAndCalledUnnamed)
{
    const CapturedOutput captured;
    SemaphoreWin32 one(nullptr, true, true);
    SemaphoreWin32 other(nullptr, true, false);
    EXPECT_TRUE(one.ask(0.0));
    EXPECT_TRUE(other.ask(0.0));
    EXPECT_FALSE(one.ask(0.01));
    EXPECT_EQ(captured.err(), "Error waiting semaphore unnamed: WAIT_TIMEOUT\n");
}

TEST(SemaphoreWin32, ThatCouldNotBeMadeFailsAtEachUse)
{
    const std::string name(300, 'n');
    const CapturedOutput captured;
    SemaphoreWin32 semaphore(name.c_str(), true, false);
    EXPECT_EQ(captured.out(), "Creating semaphore failed : " + name + "\n");
    EXPECT_FALSE(semaphore.ask(0.0));
    EXPECT_FALSE(semaphore.ask(-1.0));
    EXPECT_FALSE(semaphore.free());
    const std::string line = "Error waiting semaphore " + name + ": WAIT_FAILED, last error = 6\n";
    EXPECT_EQ(captured.err(), line + line);
}

TEST(SemaphoreWin32, UnderAnEventsNameFails)
{
    const std::string name = uniqueName();
    const CapturedOutput captured;
    const EventWin32 event(name.c_str(), true, true);
    SemaphoreWin32 semaphore(name.c_str(), true, true);
    EXPECT_EQ(captured.out(), "Creating semaphore failed : " + name + "\n");
    EXPECT_FALSE(semaphore.free());
}

TEST(SemaphoreWin32, CopiesShareTheHandle)
{
    const std::string name = uniqueName();
    SemaphoreWin32 kept(name.c_str(), true, true);
    auto copy = std::make_unique<SemaphoreWin32>(kept);
    EXPECT_TRUE(copy->ask(0.0));
    EXPECT_FALSE(kept.ask(0.0));
    EXPECT_TRUE(kept.free());
    copy.reset(); // closes the handle of both; the second closing must do no harm
}

BRV_CHILD(instanceHolder)
{
    const auto qualified = makeSemaphore(arguments[0]);
    const auto plain = makeSemaphore(arguments[0] + "plain", true, false);
    childSay(qualified->ask(0.0) && plain->ask(0.0) ? "taken" : "failed");
    childHear();
    return 0;
}

TEST(SemaphoreWin32, InstancesMeetOnlyUnderPlainNames)
{
    const std::string name = uniqueName();
    Child first("instanceHolder", {name}, {{"STUDIO_INSTANCE", "I1"}});
    first.expectLine("taken");
    const auto ours = makeSemaphore(name);
    EXPECT_TRUE(ours->ask(0.0));
    const auto theirs = makeSemaphore("I1" + name, true, false);
    EXPECT_FALSE(theirs->ask(0.0));
    const auto plain = makeSemaphore(name + "plain");
    EXPECT_FALSE(plain->ask(0.0));
    first.send("end");
    first.expectExit(0);
}

TEST(SemaphoreWin32, AsALockIsFreedWhenItsTakerDied)
{
    const std::string name = uniqueName();
    Child child("instanceHolder", {name}, {{"STUDIO_INSTANCE", ""}});
    child.expectLine("taken");
    SemaphoreWin32 semaphore(name.c_str(), true, true);
    std::string taker;
    EXPECT_EQ(semaphore.askAsLock(0.0, taker), SemaphoreWin32::LockOutcome::refused) << "it lives";
    const std::string processId = std::to_string(child.id());
    child.kill();
    EXPECT_FALSE(semaphore.ask(0.0)) << "a plain semaphore stays taken";
    const SemaphoreWin32::LockOutcome outcome = semaphore.askAsLock(0.0, taker);
    if (outcome == SemaphoreWin32::LockOutcome::refused) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    EXPECT_EQ(outcome, SemaphoreWin32::LockOutcome::takerDied);
    EXPECT_EQ(taker.find("process " + processId + " ("), 0u) << taker;
    EXPECT_EQ(semaphore.askAsLock(0.0, taker), SemaphoreWin32::LockOutcome::taken);
}

TEST(CriticalSection, HoldsForTheScopeAndThrowsItsNameOtherwise)
{
    const auto semaphore = makeSemaphore(uniqueName());
    {
        const CriticalSection guard(semaphore.get(), "guard", 1.0);
        EXPECT_FALSE(semaphore->ask(0.0));
        try {
            const CriticalSection second(semaphore.get(), "the traffic table", 0.0);
            FAIL() << "two guards at once";
        } catch (const SemaphoreSynchroError& error) {
            EXPECT_STREQ(error.what(), "the traffic table");
        }
        EXPECT_FALSE(semaphore->ask(0.0)) << "a guard that was not had frees nothing";
    }
    EXPECT_TRUE(semaphore->ask(0.0));
}

} // namespace
