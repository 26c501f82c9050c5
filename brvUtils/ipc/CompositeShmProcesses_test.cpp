#include "brvUtils/core/Errors.h"
#include "brvUtils/ipc/CompositeShm_test.h"
#include "testing/CapturedOutput.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using namespace brvUtils;
using namespace brvTesting;
using testing::HasSubstr;

BRV_CHILD(exchanger)
{
    Composite composite(arguments[0]);
    Number part(1);
    Number ready(2);
    composite.addPart(part);
    composite.addPart(ready);
    childSay("ready");
    const std::string order = childHear().value_or("");
    if (order == "hold") {
        childSay(composite.getAccess(part, 0.0) ? "holding" : "failed");
        childHear();
    } else {
        for (int i = 0; i < 1000; ++i) {
            composite.getAccess(part, -1.0);
            composite.getWithoutProtect(part, 0.0);
            ++part.value;
            composite.putWithoutProtect(part, 0.0);
            composite.releaseAccess(part);
        }
        childSay("done");
        childHear();
    }
    return 0;
}

TEST(CompositeShm, TwoProcessesLoseNoUpdate)
{
    const std::string name = uniqueName();
    Composite composite(name);
    Number part(1);
    Number ready(2);
    composite.addPart(part);
    composite.addPart(ready);
    Child one("exchanger", {name});
    Child two("exchanger", {name});
    for (Child* child : {&one, &two}) {
        child->awaitLine("ready");
    }
    one.send("count");
    two.send("count");
    one.expectLine("done");
    two.expectLine("done");
    EXPECT_TRUE(composite.get(part, 1.0));
    EXPECT_EQ(part.value, 2000);
    for (Child* child : {&one, &two}) {
        child->closeInput();
        child->expectExit(0);
    }
}

TEST(CompositeShm, AKilledHolderStopsNobody)
{
    const std::string name = uniqueName();
    Composite composite(name);
    Number part(1, 5);
    Number beside(2, 6);
    composite.addPart(part);
    composite.addPart(beside);
    Child child("exchanger", {name});
    child.awaitLine("ready");
    child.send("hold");
    child.expectLine("holding");
    const std::string processId = std::to_string(child.id());
    child.kill();

    const CapturedOutput captured;
    EXPECT_TRUE(composite.get(beside, 0.0));
    EXPECT_FALSE(composite.put(part, 0.0)) << "the part may be half written: this one call fails";
    if (captured.err().empty()) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    EXPECT_EQ(captured.err().find("Shared memory \"" + std::string(composite.shmName()) + "\": part 1 was held by process " + processId), 0u) << captured.err();
    EXPECT_TRUE(composite.put(part, 0.0));
    EXPECT_EQ(captured.out(), "");
}

BRV_CHILD(versionHolder)
{
    Composite composite(arguments[0]);
    ShmVersion record(1);
    childSay(composite.getAccess(record, 0.0) ? "holding" : "failed");
    childHear();
    return 0;
}

TEST(CompositeShm, ConstructionTriesAgainWhenAHolderDied)
{
    const std::string name = uniqueName();
    Composite creator(name);
    Child child("versionHolder", {name});
    child.awaitLine("holding");
    child.kill();
    ShmVersion record(1);
    if (const CapturedOutput captured; creator.put(record, 0.0) || captured.err().empty()) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    Child again("versionHolder", {name});
    again.awaitLine("holding");
    again.kill();
    static_cast<char*>(creator.getShmPtr())[0] = 7;
    const CapturedOutput captured;
    EXPECT_THROW(Composite{name}, ConfigurationError) << "the version is read, and found to be another";
    EXPECT_EQ(captured.out().find("Unable"), std::string::npos);
    EXPECT_THAT(captured.err(), HasSubstr("part -2 was held by process "));
}

BRV_CHILD(initLockHolder)
{
    SemaphoreWin32 lock((compositeName(arguments[0]) + " Init Lock").c_str(), true, true);
    childSay(lock.ask(0.0) ? "holding" : "failed");
    childHear();
    return 0;
}

TEST(CompositeShm, AKilledConstructorStopsNobody)
{
    const std::string name = uniqueName();
    SemaphoreWin32 keptOpen((compositeName(name) + " Init Lock").c_str(), true, true);
    Child child("initLockHolder", {name});
    child.expectLine("holding");
    child.kill();
    std::string taker;
    if (keptOpen.askAsLock(0.0, taker) != SemaphoreWin32::LockOutcome::takerDied) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    Child again("initLockHolder", {name});
    again.expectLine("holding");
    again.kill();
    const CapturedOutput captured;
    Composite composite(name);
    EXPECT_TRUE(composite.isCreated());
    EXPECT_THAT(captured.err(), HasSubstr("the initialisation lock was held by process "));
}

} // namespace
