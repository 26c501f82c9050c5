#include "brvUtils/os/Semaphore.h"

#include "brvUtils/os/Event.h"
#include "brvUtils/os/Segment.h"
#include "testing/Child.h"
#include "testing/UniqueName.h"

#include <gmock/gmock.h>

#include <chrono>
#include <string>
#include <thread>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

bool take(Semaphore* semaphore, Milliseconds timeout = 0)
{
    return waitSemaphore(semaphore, timeout).status == WaitStatus::signalled;
}

TEST(Semaphore, OnlyItsCreatorFixesTheFirstState)
{
    const std::string name = uniqueName();
    const SemaphoreOpening first = openSemaphore(name.c_str(), false);
    const SemaphoreOpening second = openSemaphore(name.c_str(), true);
    EXPECT_TRUE(first.created);
    EXPECT_FALSE(second.created);
    EXPECT_FALSE(take(second.semaphore));
    EXPECT_EQ(releaseSemaphore(first.semaphore), error::none);
    EXPECT_TRUE(take(second.semaphore));
    closeSemaphore(first.semaphore);
    closeSemaphore(second.semaphore);

    const SemaphoreOpening later = openSemaphore(name.c_str(), true);
    EXPECT_TRUE(later.created) << "the object is gone with its last handle";
    EXPECT_TRUE(take(later.semaphore));
    closeSemaphore(later.semaphore);
}

TEST(Semaphore, CountsToOne)
{
    Semaphore* semaphore = openSemaphore(nullptr, true).semaphore;
    EXPECT_EQ(releaseSemaphore(semaphore), error::tooManyPosts);
    EXPECT_TRUE(take(semaphore));
    EXPECT_FALSE(take(semaphore));
    EXPECT_FALSE(take(semaphore, 20));
    EXPECT_EQ(releaseSemaphore(semaphore), error::none);
    EXPECT_EQ(releaseSemaphore(semaphore), error::tooManyPosts);
    EXPECT_TRUE(take(semaphore));
    closeSemaphore(semaphore);
}

TEST(Semaphore, WithoutANameIsEachTimeAnother)
{
    Semaphore* one = openSemaphore(nullptr, true).semaphore;
    Semaphore* other = openSemaphore(nullptr, true).semaphore;
    EXPECT_TRUE(take(one));
    EXPECT_TRUE(take(other));
    closeSemaphore(one);
    closeSemaphore(other);
}

TEST(Semaphore, NamesAreCheckedAndTakenAsTheyStand)
{
    EXPECT_EQ(openSemaphore("", true).error, error::invalidParameter);
    EXPECT_EQ(openSemaphore(std::string(260, 'n').c_str(), true).error, error::fileNameTooLong);
    EXPECT_EQ(openSemaphore(std::string(300, 'n').c_str(), true).error, error::fileNameTooLong);
    EXPECT_EQ(openSemaphore("a\\b", true).error, error::pathNotFound);

    const std::string stem = uniqueName();
    for (const std::string& name : {stem + " with blanks ", stem + "/a/b", "../" + stem, stem + "\xC3\xA9\xE8\xBB\x8A", stem + std::string(259 - stem.size(), 'n')}) {
        const SemaphoreOpening opening = openSemaphore(name.c_str(), true);
        EXPECT_TRUE(opening.created) << name;
        const SemaphoreOpening again = openSemaphore(name.c_str(), true);
        EXPECT_FALSE(again.created) << name;
        closeSemaphore(opening.semaphore);
        closeSemaphore(again.semaphore);
    }
    const SemaphoreOpening plain = openSemaphore(stem.c_str(), true);
    const SemaphoreOpening prefixed = openSemaphore(("Local\\" + stem).c_str(), true);
    EXPECT_FALSE(prefixed.created);
    closeSemaphore(plain.semaphore);
    closeSemaphore(prefixed.semaphore);
}

TEST(Semaphore, ANameBelongsToOneKind)
{
    const std::string name = uniqueName();
    Event* event = openEvent(name.c_str(), false, true).event;
    const SemaphoreOpening opening = openSemaphore(name.c_str(), true);
    EXPECT_EQ(opening.semaphore, nullptr);
    EXPECT_EQ(opening.error, error::invalidHandle);
    EXPECT_EQ(openSegment(name.c_str(), 10).error, error::invalidHandle);
    EXPECT_EQ(waitEvent(event, 0).status, WaitStatus::signalled) << "what was there is as it was";
    closeEvent(event);
}

TEST(Semaphore, ANullOrClosedHandleIsAnError)
{
    Semaphore* closed = openSemaphore(nullptr, true).semaphore;
    EXPECT_EQ(closeSemaphore(closed), error::none);
    for (Semaphore* semaphore : {static_cast<Semaphore*>(nullptr), closed}) {
        EXPECT_EQ(waitSemaphore(semaphore, 0).status, WaitStatus::failed);
        EXPECT_EQ(waitSemaphore(semaphore, 0).error, error::invalidHandle);
        EXPECT_EQ(releaseSemaphore(semaphore), error::invalidHandle);
        EXPECT_EQ(closeSemaphore(semaphore), error::invalidHandle);
    }
}

TEST(Semaphore, AnotherThreadAnswersAWaitWithoutLimit)
{
    const std::string name = uniqueName();
    Semaphore* ping = openSemaphore((name + "1").c_str(), false).semaphore;
    Semaphore* pong = openSemaphore((name + "2").c_str(), false).semaphore;
    constexpr int rounds = 2000;
    std::thread other([&] {
        for (int i = 0; i < rounds; ++i) {
            take(ping, infinite);
            releaseSemaphore(pong);
        }
    });
    for (int i = 0; i < rounds; ++i) {
        releaseSemaphore(ping);
        ASSERT_TRUE(take(pong, infinite));
    }
    other.join();
    closeSemaphore(ping);
    closeSemaphore(pong);
}

/// Counts under the semaphore: the sum is right only if never two are inside.
TEST(Semaphore, IsALockBetweenThreads)
{
    Semaphore* semaphore = openSemaphore(uniqueName().c_str(), true).semaphore;
    long sum = 0;
    const auto work = [&] {
        for (int i = 0; i < 20000; ++i) {
            take(semaphore, infinite);
            ++sum;
            releaseSemaphore(semaphore);
        }
    };
    std::thread one(work);
    std::thread two(work);
    work();
    one.join();
    two.join();
    EXPECT_EQ(sum, 60000);
    closeSemaphore(semaphore);
}

/// Counts in shared memory under a lock that is now and then held long enough for the others to fall asleep.
void countUnderALock(const std::string& name)
{
    Semaphore* lock = openSemaphore((name + "L").c_str(), true).semaphore;
    useAsLock(lock);
    Segment* segment = openSegment((name + "M").c_str(), sizeof(long)).segment;
    auto& sum = *static_cast<long*>(segmentAddress(segment));
    for (int i = 0; i < 4000; ++i) {
        take(lock, infinite);
        ++sum;
        if (i % 16 == 0) {
            const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(60);
            while (std::chrono::steady_clock::now() < end) {
            }
        }
        releaseSemaphore(lock);
    }
    closeSemaphore(lock);
    closeSegment(segment);
}

BRV_CHILD(lockCounter)
{
    countUnderALock(arguments[0]);
    return 0;
}

TEST(Semaphore, WithoutANameIsClean)
{
    // Handles are used again.
    Semaphore* named = openSemaphore(uniqueName().c_str(), true).semaphore;
    useAsLock(named);
    closeSemaphore(named);
    Semaphore* semaphore = openSemaphore(nullptr, false).semaphore;
    EXPECT_EQ(waitSemaphore(semaphore, 1).status, WaitStatus::timedOut);
    EXPECT_EQ(releaseSemaphore(semaphore), error::none);
    EXPECT_EQ(waitSemaphore(semaphore, infinite).status, WaitStatus::signalled);
    closeSemaphore(semaphore);
}

/// A sleeper that was forgotten would sleep for ever, and the test with it.
TEST(Semaphore, AsALockForgetsNoSleeper)
{
    const std::string name = uniqueName();
    const SegmentOpening kept = openSegment((name + "M").c_str(), sizeof(long));
    Child one("lockCounter", {name});
    Child two("lockCounter", {name});
    std::thread thread([&] { countUnderALock(name); });
    countUnderALock(name);
    thread.join();
    one.expectExit(0);
    two.expectExit(0);
    EXPECT_EQ(*static_cast<long*>(segmentAddress(kept.segment)), 4 * 4000);
    closeSegment(kept.segment);
}

BRV_CHILD(semaphoreHolder)
{
    Semaphore* semaphore = openSemaphore(arguments[0].c_str(), true).semaphore;
    const bool taken = take(semaphore);
    childSay(taken ? "taken" : "open");
    const std::string order = childHear().value_or("exit");
    if (order == "wait") {
        childSay("waiting");
        childSay(take(semaphore, infinite) ? "taken" : "failed");
        childHear();
    } else if (order == "abort") {
        std::abort();
    }
    return 0; // without closing: the system does
}

TEST(Semaphore, StaysTakenWhenItsTakerEnds)
{
    for (const std::string end : {"exit", "abort", "kill"}) {
        const std::string name = uniqueName();
        Semaphore* semaphore = openSemaphore(name.c_str(), true).semaphore;
        Child child("semaphoreHolder", {name});
        child.expectLine("taken");
        if (end == "kill") {
            child.kill();
        } else {
            child.send(end);
            child.waitForEnd();
        }
        EXPECT_FALSE(take(semaphore, 20)) << end;
        EXPECT_EQ(releaseSemaphore(semaphore), error::none) << end;
        EXPECT_TRUE(take(semaphore)) << end;
        closeSemaphore(semaphore);
    }
}

TEST(Semaphore, IsGoneWithTheLastProcess)
{
    for (const std::string end : {"exit", "abort", "kill"}) {
        const std::string name = uniqueName();
        Child child("semaphoreHolder", {name});
        child.expectLine("taken");
        const SemaphoreOpening beside = openSemaphore(name.c_str(), true);
        EXPECT_FALSE(beside.created) << end;
        closeSemaphore(beside.semaphore);
        if (end == "kill") {
            child.kill();
        } else {
            child.send(end);
            child.waitForEnd();
        }
        const SemaphoreOpening after = openSemaphore(name.c_str(), true);
        EXPECT_TRUE(after.created) << end;
        EXPECT_TRUE(take(after.semaphore)) << end;
        closeSemaphore(after.semaphore);
    }
}

TEST(Semaphore, AKilledWaiterTakesNothingWithIt)
{
    const std::string name = uniqueName();
    Semaphore* semaphore = openSemaphore(name.c_str(), true).semaphore;
    ASSERT_TRUE(take(semaphore));
    Child first("semaphoreHolder", {name});
    Child second("semaphoreHolder", {name});
    for (Child* child : {&first, &second}) {
        child->expectLine("open");
        child->send("wait");
        child->expectLine("waiting");
    }
    first.kill();
    releaseSemaphore(semaphore);
    second.expectLine("taken");
    EXPECT_FALSE(take(semaphore));
    second.closeInput();
    second.expectExit(0);
    closeSemaphore(semaphore);
}

TEST(Semaphore, KnowsADeadTaker)
{
    if (!deadTakersAreKnown()) {
        GTEST_SKIP() << "this system does not tell who took a semaphore";
    }
    const std::string name = uniqueName();
    Semaphore* semaphore = openSemaphore(name.c_str(), true).semaphore;
    Child child("semaphoreHolder", {name});
    child.expectLine("taken");
    EXPECT_FALSE(releaseSemaphoreOfDeadTaker(semaphore).found) << "it lives";
    const std::uint32_t processId = child.id();
    child.kill();
    const DeadTaker dead = releaseSemaphoreOfDeadTaker(semaphore);
    EXPECT_TRUE(dead.found);
    EXPECT_EQ(dead.processId, processId);
    EXPECT_THAT(std::string(dead.program), testing::HasSubstr("os_test"));
    EXPECT_FALSE(releaseSemaphoreOfDeadTaker(semaphore).found) << "one finds it";
    EXPECT_TRUE(take(semaphore));
    EXPECT_FALSE(releaseSemaphoreOfDeadTaker(semaphore).found) << "this process lives";
    closeSemaphore(semaphore);

    Semaphore* takenByNobody = openSemaphore(uniqueName().c_str(), false).semaphore;
    EXPECT_FALSE(releaseSemaphoreOfDeadTaker(takenByNobody).found);
    closeSemaphore(takenByNobody);
}

} // namespace
