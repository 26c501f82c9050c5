#include "brvUtils/os/linux/ObjectTable_test.h"

#include "brvUtils/os/Event.h"
#include "brvUtils/os/Segment.h"
#include "brvUtils/os/Semaphore.h"
#include "brvUtils/os/linux/TableLayout.h"
#include "testing/Child.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

BRV_CHILD(objectHolder)
{
    openSemaphore("held semaphore", true);
    openSegment("held segment", 10'000);
    childSay("ready");
    childHear();
    return 0;
}

TEST(ObjectTable, LeavesNoFileBehind)
{
    const NameSpace space;
    Semaphore* semaphore = openSemaphore("a", true).semaphore;
    Segment* segment = openSegment("b", 10'000).segment;
    EXPECT_EQ(space.files(), 2);
    closeSegment(segment);
    EXPECT_EQ(space.files(), 1);
    closeSemaphore(semaphore);
    EXPECT_EQ(space.files(), 0);
}

BRV_CHILD(exitsWithObjects)
{
    // Runs when the library has left the table already.
    std::atexit([] {
        const SemaphoreOpening late = openSemaphore("late", true);
        childSay(late.created ? "created" : "failed");
        closeSemaphore(late.semaphore);
    });
    static Segment* const segment = openSegment("held segment", 10'000).segment;
    std::atexit([] { closeSegment(segment); });
    openSemaphore("held semaphore", true);
    std::exit(0);
}

TEST(ObjectTable, AProgramThatJustExitsLeavesNoFileAndHoldsUpNobody)
{
    const NameSpace space;
    {
        Child child("exitsWithObjects");
        child.expectLine("created");
        child.expectExit(0);
    }
    EXPECT_EQ(space.files(), 0);

    Semaphore* beside = openSemaphore("beside", true).semaphore;
    Child child("exitsWithObjects");
    child.expectLine("created");
    child.expectExit(0);
    const SegmentOpening next = openSegment("held segment", 10'000);
    EXPECT_TRUE(next.created);
    closeSegment(next.segment);
    closeSemaphore(beside);
}

BRV_CHILD(forks)
{
    waitSemaphore(openSemaphore(arguments[0].c_str(), true).semaphore, 0);
    int forked[2];
    if (pipe(forked) != 0) {
        return 1;
    }
    if (fork() == 0) {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
        close(forked[0]);
        close(forked[1]);
        childHear(); // until the test closes the input
        _exit(0);
    }
    close(forked[1]);
    char end = 0;
    childSay(read(forked[0], &end, 1) == 0 ? "forked" : "failed");
    childHear();
    return 0;
}

TEST(ObjectTable, AForkedChildDoesNotKeepItsParentsLocks)
{
    const NameSpace space;
    Semaphore* semaphore = openSemaphore("x", true).semaphore;
    Child child("forks", {"x"});
    child.expectLine("forked");
    child.kill();
    EXPECT_TRUE(releaseSemaphoreOfDeadTaker(semaphore).found);
    closeSemaphore(semaphore);
    EXPECT_EQ(space.files(), 0);
}

BRV_CHILD(taker)
{
    const bool took = waitSemaphore(openSemaphore(arguments[0].c_str(), true).semaphore, 0).status == WaitStatus::signalled;
    childSay(took ? "taken" : "failed");
    childHear();
    return 0;
}

TEST(ObjectTable, ATicketThatIsStillInUseDoesNotComeAgain)
{
    const NameSpace space;
    Semaphore* semaphore = openSemaphore("x", true).semaphore;
    Child dead("taker", {"x"});
    dead.expectLine("taken");
    dead.kill();
    {
        std::fstream file(space.table(), std::ios::in | std::ios::out | std::ios::binary);
        const auto patch = [&](std::size_t offset, std::uint32_t value) {
            file.seekp(static_cast<std::streamoff>(offset));
            file.write(reinterpret_cast<const char*>(&value), sizeof value);
        };
        patch(offsetof(TableHeader, lastTicket), minimumTicket); // this process's; the dead one's is next
        patch(offsetof(TableHeader, ticketsCameAround), 1);
    }
    Child next("objectHolder");
    next.expectLine("ready");
    EXPECT_TRUE(releaseSemaphoreOfDeadTaker(semaphore).found) << "the next process is not taken for the dead one";
    closeSemaphore(semaphore);
}

BRV_CHILD(returner)
{
    {
        Semaphore* semaphore = openSemaphore(arguments[0].c_str(), true).semaphore;
        waitSemaphore(semaphore, 0);
        closeSemaphore(semaphore);
    }
    openSemaphore(arguments[0].c_str(), true);
    childSay("back");
    childHear();
    return 0;
}

TEST(ObjectTable, WhatAProcessLeftTakenIsNotItsOwnWhenItComesBack)
{
    const NameSpace space;
    Semaphore* semaphore = openSemaphore("x", true).semaphore;
    Child child("returner", {"x"});
    child.expectLine("back");
    EXPECT_TRUE(releaseSemaphoreOfDeadTaker(semaphore).found);
    closeSemaphore(semaphore);
}

TEST(ObjectTable, ClearsAwayWhatKilledProcessesLeft)
{
    const NameSpace space;
    Child child("objectHolder");
    child.expectLine("ready");
    child.kill();
    EXPECT_EQ(space.files(), 2);
    closeSemaphore(openSemaphore("another", true).semaphore);
    EXPECT_EQ(space.files(), 0);
}

TEST(ObjectTable, TouchesNoFileOfOthers)
{
    const NameSpace space;
    Child child("objectHolder");
    child.expectLine("ready");
    const fs::path foreign = space.table().parent_path() / "brvUtils-segment-notes.txt";
    std::ofstream(foreign) << "text";
    child.kill();
    closeSemaphore(openSemaphore("another", true).semaphore);
    EXPECT_TRUE(fs::exists(foreign));
    EXPECT_EQ(space.files(), 1);
}

TEST(ObjectTable, AProcessWhoseFilesWereRemovedLeavesThoseOfOthersAlone)
{
    const NameSpace space;
    Semaphore* former = openSemaphore("former", true).semaphore;
    fs::remove(space.table());
    EXPECT_EQ(openSemaphore("x", true).error, error::invalidData);
    Child child("objectHolder");
    child.expectLine("ready");
    EXPECT_EQ(closeSemaphore(former), error::invalidData);
    EXPECT_EQ(space.files(), 2);
    const SemaphoreOpening next = openSemaphore("held semaphore", true);
    EXPECT_NE(next.semaphore, nullptr);
    EXPECT_FALSE(next.created);
    closeSemaphore(next.semaphore);
}

TEST(ObjectTable, AForeignFileInPlaceOfTheTableIsReplacedOnlyWhileNobodyUsesIt)
{
    const auto damages = {
        +[](const fs::path& table) { std::ofstream(table) << "something else"; },
        +[](const fs::path& table) { fs::resize_file(table, 1000); },
        +[](const fs::path& table) {
            std::fstream file(table, std::ios::in | std::ios::out | std::ios::binary);
            file.seekp(offsetof(TableHeader, version));
            file.put(99);
        },
    };
    for (const auto damage : damages) {
        const NameSpace space;
        Child child("objectHolder");
        child.expectLine("ready");
        damage(space.table());
        const SemaphoreOpening refused = openSemaphore("x", true);
        EXPECT_EQ(refused.semaphore, nullptr);
        EXPECT_TRUE(refused.error == error::invalidData || refused.error == error::revisionMismatch) << refused.error;
        child.kill();
        const SemaphoreOpening opened = openSemaphore("x", true);
        EXPECT_TRUE(opened.created);
        closeSemaphore(opened.semaphore);
        EXPECT_EQ(space.files(), 0) << "the segment of the former table is gone too";
    }
}

TEST(ObjectTable, ATableCutShortUnderAUserRefusesTheNextOpening)
{
    const NameSpace space;
    Semaphore* kept = openSemaphore("kept", true).semaphore;
    const auto size = fs::file_size(space.table());
    fs::resize_file(space.table(), size - 1);
    EXPECT_EQ(openSemaphore("next", true).error, error::invalidData);
    fs::resize_file(space.table(), size);
    EXPECT_EQ(waitSemaphore(kept, 0).status, WaitStatus::signalled);
    closeSemaphore(kept);
}

BRV_CHILD(manyObjects)
{
    const rlimit descriptors{1024, 1024};
    setrlimit(RLIMIT_NOFILE, &descriptors);
    std::vector<Semaphore*> semaphores;
    std::vector<Event*> events;
    std::vector<Segment*> segments;
    for (int i = 0; i < 8192; ++i) {
        const std::string name = "object " + std::to_string(i);
        bool created = false;
        if (i % 4 == 0) {
            events.push_back(openEvent(name.c_str(), i % 8 == 0, true).event);
            created = events.back() != nullptr && waitEvent(events.back(), 0).status == WaitStatus::signalled;
        } else if (i % 4 == 1) {
            segments.push_back(openSegment(name.c_str(), 100).segment);
            created = segmentAddress(segments.back()) != nullptr;
        } else {
            semaphores.push_back(openSemaphore(name.c_str(), true).semaphore);
            created = waitSemaphore(semaphores.back(), 0).status == WaitStatus::signalled;
        }
        if (!created) {
            childSay("failed at " + name);
            return 1;
        }
    }
    childSay("8192");
    childHear();
    for (Semaphore* semaphore : semaphores) {
        closeSemaphore(semaphore);
    }
    for (Event* event : events) {
        closeEvent(event);
    }
    for (Segment* segment : segments) {
        closeSegment(segment);
    }
    return 0;
}

TEST(ObjectTable, HoldsThousandsOfObjectsWithoutADescriptorEach)
{
    const NameSpace space;
    Child child("manyObjects");
    child.expectLine("8192");
    Semaphore* beside = openSemaphore("object 8191", true).semaphore;
    EXPECT_EQ(waitSemaphore(beside, 0).status, WaitStatus::timedOut) << "the child holds it";
    child.send("end");
    child.expectExit(0);
    closeSemaphore(beside);
    EXPECT_EQ(space.files(), 0);
}

TEST(ObjectTable, AForkedChildClosesNothingOfItsParent)
{
    const NameSpace space;
    const std::string name = uniqueName();
    Semaphore* semaphore = openSemaphore(name.c_str(), true).semaphore;
    const pid_t child = fork();
    if (child == 0) {
        closeSemaphore(semaphore);
        const SemaphoreOpening own = openSemaphore(name.c_str(), true);
        const bool seesParents = !own.created;
        closeSemaphore(own.semaphore);
        _exit(seesParents ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    Child other("objectHolder");
    other.expectLine("ready");
    other.kill();
    const SemaphoreOpening again = openSemaphore(name.c_str(), true);
    EXPECT_FALSE(again.created);
    closeSemaphore(again.semaphore);
    closeSemaphore(semaphore);
}

} // namespace
