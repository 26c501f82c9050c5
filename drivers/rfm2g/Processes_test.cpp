#include "rfm2g/Driver_test.h"
#include "rfm2g/Ring.h"

#include "testing/Child.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <random>
#include <thread>

// Nodes in processes of their own, which may die at any moment.

namespace {

using namespace cardTest;
using namespace brvTesting;
using softwareCard::Ring;

std::uint32_t numberOf(const std::string& text)
{
    return static_cast<std::uint32_t>(std::stoul(text));
}

/// Writes 1, 2, 3 ... first here and then far away, until it is told to stop.
BRV_CHILD(counter)
{
    const OpenNode node(1);
    std::atomic<bool> stop{false};
    std::thread listener([&] {
        childHear();
        stop = true;
    });
    childSay("counting");
    for (std::uint32_t value = 1; !stop; ++value) {
        node.write(0, value);
        node.write(10'000'000, value);
    }
    listener.join();
    return 0;
}

TEST(Processes, SeeWritesInTheOrderOfTheWriter)
{
    const OwnRings rings;
    const OpenNode node(2);
    Child child("counter");
    child.expectLine("counting");
    std::uint32_t last = 0;
    for (int i = 0; i < 100'000; ++i) {
        const std::uint32_t second = node.word(10'000'000);
        const std::uint32_t first = node.word(0);
        ASSERT_LE(second, first);
        ASSERT_LE(last, second);
        last = second;
    }
    child.closeInput();
    child.expectExit(0);
}

/// Sends 0, 1, 2 ... as fast as it can: as often as it is told, or for ever.
BRV_CHILD(sender)
{
    const OpenNode node(static_cast<Node>(numberOf(arguments[0])));
    const std::uint32_t count = numberOf(arguments[1]);
    childSay("ready");
    childHear();
    for (std::uint32_t data = 0; count == 0 || data < count; ++data) {
        node.send(allNodes, Event::user1, data);
        node.write(node.word(0) % 60'000'000 + data % 1000, data);
    }
    return 0;
}

TEST(Processes, AreToldAllThatOthersSend)
{
    constexpr std::uint32_t count = 20'000;
    const OwnRings rings;
    const OpenNode node(3);
    Receiver receiver(node, {Event::fifoFull, Event::user1, Event::user2});
    Child children[] = {Child("sender", {"1", std::to_string(count)}), Child("sender", {"2", std::to_string(count)})};
    for (Child& child : children) {
        child.expectLine("ready");
    }
    for (Child& child : children) {
        child.send("go");
    }
    for (Child& child : children) {
        child.expectExit(0);
    }
    const OpenNode last(4);
    last.send(3, Event::user2);
    std::array<std::int64_t, 3> before{-1, -1, -1};
    std::uint32_t told = 0;
    std::uint32_t lost = 0;
    for (const Told& each : receiver.until({Event::user2, 4, 0})) {
        if (each.event == Event::fifoFull) {
            lost += each.data;
        } else if (each.event == Event::user1) {
            ASSERT_LT(before[each.node], each.data);
            before[each.node] = each.data;
            ++told;
        }
    }
    EXPECT_EQ(told + lost, 2 * count);
}

TEST(Processes, LeaveAWorkingRingWhereverTheyAreKilled)
{
    const OwnRings rings;
    const OpenNode node(3);
    Receiver receiver(node, {Event::user1});
    const OpenNode other(4);
    std::mt19937 random(20'091'108);
    for (int round = 0; round < 30; ++round) {
        Child child("sender", {"1", "0"});
        child.expectLine("ready");
        child.send("go");
        receiver.next(1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        child.kill();
        const auto data = static_cast<std::uint32_t>(round);
        EXPECT_EQ(other.send(3, Event::user1, data), Status::success);
        receiver.until({Event::user1, 4, data});
        EXPECT_EQ(other.write(data * 70'000, data), Status::success);
        EXPECT_EQ(node.word(data * 70'000), data);
        ASSERT_FALSE(HasFailure()) << round;
    }
    EXPECT_EQ(Ring::open(rings.place()).ring->handles().size(), 2u);
}

/// Opens and removes rings.
BRV_CHILD(maker)
{
    const softwareCard::RingPlace place{softwareCard::variable("RFM2G_FOLDER"), softwareCard::defaultRing};
    childSay("ready");
    for (;;) {
        { const OpenNode node(1); }
        softwareCard::removeRing(place);
    }
}

TEST(Processes, MakeARingThatAKilledMakerLeft)
{
    const OwnRings rings;
    std::mt19937 random(20'091'109);
    for (int round = 0; round < 20; ++round) {
        Child makers[] = {Child("maker"), Child("maker")};
        for (Child& maker : makers) {
            maker.expectLine("ready");
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        for (Child& maker : makers) {
            maker.kill();
            EXPECT_EQ(maker.err(), "");
        }
        {
            const OpenNode node(2);
            EXPECT_EQ(node.word(0), 0u);
            EXPECT_EQ(Ring::open(rings.place()).ring->handles().size(), 1u);
        }
        EXPECT_EQ(softwareCard::removeRing(rings.place()), "");
        ASSERT_FALSE(HasFailure()) << round;
    }
    EXPECT_TRUE(softwareCard::ringNames(rings.place().folder).empty());
}

/// Ends without closing its handle, which is in a callback if that is wanted.
BRV_CHILD(leaver)
{
    Handle handle = nullptr;
    if (driver().open(device("1").data(), &handle) != Status::success) {
        return 1;
    }
    static std::atomic<bool> inside{false};
    driver().enableEvent(handle, Event::user1);
    driver().enableEventCallback(handle, Event::user1, [](Handle, EventInfo*) {
        for (inside = true;;) {
            std::this_thread::yield();
        }
    });
    childSay("listening");
    childHear();
    while (arguments[0] == "inside" && !inside) {
        std::this_thread::yield();
    }
    return 0;
}

TEST(Processes, MayEndWithoutClosing)
{
    const OwnRings rings;
    const OpenNode node(2);
    const auto ring = Ring::open(rings.place()).ring;
    for (const char* where : {"inside", "waiting"}) {
        Child child("leaver", {where});
        child.expectLine("listening");
        const auto handles = ring->handles();
        EXPECT_EQ(handles.size(), 2u);
        EXPECT_TRUE(std::any_of(handles.begin(), handles.end(),
            [&](const softwareCard::OpenHandle& handle) { return handle.node == 1 && handle.process == child.id() && handle.events == 2; }));
        if (where == std::string("inside")) {
            node.send(1, Event::user1);
        }
        child.closeInput();
        child.expectExit(0);
        EXPECT_EQ(ring->handles().size(), 1u);
    }
}

} // namespace
