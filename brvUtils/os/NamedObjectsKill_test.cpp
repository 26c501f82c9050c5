#include "brvUtils/os/Event.h"
#include "brvUtils/os/Segment.h"
#include "brvUtils/os/Semaphore.h"
#include "testing/Child.h"
#include "testing/EnvironmentGuard.h"
#include "testing/TemporaryFolder.h"
#include "testing/UniqueName.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

// Two processes create, take, free, set, wait for and destroy the same few objects as fast as they can, while one of them
// after the other is ended at a moment of chance.

namespace {

using namespace brvUtils::os;
using namespace brvTesting;

constexpr std::size_t segmentSize = 20'000;

struct Work
{
    std::string prefix;
    std::minstd_rand random;
    std::string name(const char* kind) { return prefix + kind + std::to_string(random() % 3); }

    bool useSemaphore()
    {
        const SemaphoreOpening opening = openSemaphore(name("S").c_str(), random() % 2 == 0);
        if (opening.semaphore == nullptr) {
            return false;
        }
        if (random() % 2 == 0) {
            useAsLock(opening.semaphore);
        }
        for (int i = 0; i < 4; ++i) {
            if (waitSemaphore(opening.semaphore, random() % 3).status == WaitStatus::signalled || random() % 2 == 0) {
                releaseSemaphore(opening.semaphore);
            }
            releaseSemaphoreOfDeadTaker(opening.semaphore);
        }
        return closeSemaphore(opening.semaphore) == error::none;
    }

    bool useEvents()
    {
        Event* const events[] = {
            openEvent((prefix + "A").c_str(), false, false).event,
            openEvent((prefix + "M").c_str(), true, false).event,
        };
        if (events[0] == nullptr || events[1] == nullptr) {
            return false;
        }
        std::size_t index = 0;
        waitEvents(events, 2, random() % 2 == 0, random() % 2, &index);
        setEvent(events[random() % 2]);
        resetEvent(events[1]);
        waitEvent(events[0], random() % 2);
        setEvent(events[0]);
        return closeEvent(events[0]) == error::none && closeEvent(events[1]) == error::none;
    }

    bool useSegment()
    {
        const SegmentOpening opening = openSegment(name("M").c_str(), segmentSize);
        auto* bytes = static_cast<char*>(segmentAddress(opening.segment));
        if (bytes == nullptr) {
            return false;
        }
        bytes[0] = bytes[segmentSize - 1] = 'x';
        return closeSegment(opening.segment) == error::none;
    }

    bool turn() { return useSemaphore() && useEvents() && useSegment(); }
};

BRV_CHILD(worker)
{
    const std::string& end = arguments[2];
    Work work{arguments[0], std::minstd_rand(static_cast<unsigned>(std::stoul(arguments[1])))};
    std::atomic<bool> told{false};
    std::thread listener([&] {
        childHear();
        told = true;
        if (end == "abort") {
            std::abort();
        }
        if (end == "exit in mid-work") {
            std::_Exit(0);
        }
    });
    bool works = true;
    for (int turn = 0; works && !told; ++turn) {
        works = work.turn();
        if (turn == 0) {
            childSay("working");
        }
    }
    listener.join();
    return works ? 0 : 1;
}

/// Waits without limit, again and again; whoever is killed beside it must not make it miss what it waits for.
BRV_CHILD(patientWaiter)
{
    Semaphore* semaphore = openSemaphore((arguments[0] + "P").c_str(), false).semaphore;
    Event* event = openEvent((arguments[0] + "Q").c_str(), false, false).event;
    childSay("waiting");
    while (childHear()) {
        waitSemaphore(semaphore, infinite);
        childSay("semaphore");
        waitEvent(event, infinite);
        childSay("event");
    }
    closeSemaphore(semaphore);
    closeEvent(event);
    return 0;
}

int rounds()
{
    // Starting a process takes ten times as long where the system is emulated.
    return deadTakersAreKnown() ? 200 : 30;
}

TEST(NamedObjects, SurviveProcessesThatEndAnywhere)
{
    const TemporaryFolder folder;
    const EnvironmentGuard nameSpace("STUDIO_IPC_NAMESPACE", (folder.path() / "objects").string());
    const std::string prefix = uniqueName();
    std::mt19937 random(20'090'507);
    const auto start = [&](const std::string& end) {
        auto child = std::make_unique<Child>("worker", Arguments{prefix, std::to_string(random()), end});
        child->expectLine("working");
        return child;
    };
    const std::string ends[] = {"kill", "kill", "abort", "exit in mid-work", "return"};
    auto survivor = start("return");
    Semaphore* semaphore = openSemaphore((prefix + "P").c_str(), false).semaphore;
    Event* event = openEvent((prefix + "Q").c_str(), false, false).event;
    Child waiter("patientWaiter", {prefix});
    waiter.expectLine("waiting");
    for (int round = 0; round < rounds(); ++round) {
        const std::string& end = ends[random() % std::size(ends)];
        const auto victim = start(end);
        waiter.send("again");
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        if (end == "kill") {
            victim->kill();
        } else {
            victim->closeInput();
            if (end == "abort") {
                victim->expectAbort();
            } else {
                victim->expectExit(0);
            }
        }
        releaseSemaphore(semaphore);
        waiter.expectLine("semaphore");
        setEvent(event);
        waiter.expectLine("event");
        ASSERT_FALSE(HasFailure()) << "round " << round << ", " << end;
        if (round % 20 == 19) {
            survivor->closeInput();
            survivor->expectExit(0);
            survivor = start("return");
        }
    }
    survivor->closeInput();
    survivor->expectExit(0);
    waiter.closeInput();
    waiter.expectExit(0);
    closeSemaphore(semaphore);
    closeEvent(event);

    // The last process is gone: each next creator finds nothing.
    for (int i = 0; i < 3; ++i) {
        const SemaphoreOpening fresh = openSemaphore((prefix + "S" + std::to_string(i)).c_str(), true);
        const SegmentOpening segment = openSegment((prefix + "M" + std::to_string(i)).c_str(), segmentSize);
        EXPECT_TRUE(fresh.created);
        EXPECT_TRUE(segment.created);
        EXPECT_EQ(static_cast<char*>(segmentAddress(segment.segment))[segmentSize - 1], '\0');
        closeSemaphore(fresh.semaphore);
        closeSegment(segment.segment);
    }
    const auto left = std::filesystem::exists(folder.path() / "objects") ? std::filesystem::directory_iterator(folder.path() / "objects") : std::filesystem::directory_iterator();
    EXPECT_EQ(std::distance(left, {}), 0);
}

} // namespace
