#include "rfm2g/Driver_test.h"
#include "rfm2g/EventLog.h"
#include "rfm2g/RingFile.h"
#include "rfm2g/RingLayout.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>
#include <utility>

namespace {

using namespace cardTest;
using List = std::vector<Told>;

TEST(Events, RefuseWhatCannotBeSentOrHeard)
{
    const OwnRings rings;
    const OpenNode node(1);
    const auto kind = [](int number) { return static_cast<Event>(number); };
    EXPECT_EQ(node.send(256, kind(99)), Status::badParameter2);
    EXPECT_EQ(node.send(0xFFFE, Event::user1), Status::badParameter2);
    EXPECT_EQ(node.send(1, kind(5)), Status::badParameter3);
    EXPECT_EQ(node.send(2, kind(-1)), Status::badParameter3);
    EXPECT_EQ(node.send(1, Event::user1), Status::ownNode);
    EXPECT_EQ(node.send(255, Event::reset), Status::success);
    EXPECT_EQ(node.send(allNodes, Event::user4), Status::success);
    for (const int number : {-1, 12}) {
        EXPECT_EQ(driver().enableEvent(node, kind(number)), Status::badParameter2);
        EXPECT_EQ(driver().clearEvent(node, kind(number)), Status::badParameter2);
        EXPECT_EQ(driver().enableEventCallback(node, kind(number), nullptr), Status::badParameter2);
    }
    EXPECT_EQ(driver().enableEventCallback(node, Event::user1, nullptr), Status::badParameter3);
    for (int number = 0; number < 12; ++number) {
        EXPECT_EQ(driver().enableEvent(node, kind(number)), Status::success);
        EXPECT_EQ(driver().enableEvent(node, kind(number)), Status::success);
        EXPECT_EQ(driver().clearEvent(node, kind(number)), Status::success);
    }
}

TEST(Events, ReachThoseAddressedWithTheirDataInOrder)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    const OpenNode alsoTwo(2);
    const OpenNode three(3);
    const std::vector<Event> all{Event::reset, Event::user1, Event::user2, Event::user3, Event::user4};
    Receiver atOne(one, all);
    Receiver atTwo(two, all);
    Receiver alsoAtTwo(alsoTwo, all);
    Receiver atThree(three, all);
    one.send(2, Event::user1, 0xFFFFFFFF);
    one.send(allNodes, Event::user2, 7);
    one.send(3, Event::user3, 8);
    two.send(allNodes, Event::reset, 9);
    three.send(allNodes, Event::user4, 10);
    // A broadcast never reaches its sender, nor another handle of the sender's node.
    EXPECT_EQ(atOne.until({Event::user4, 3, 10}), (List{{Event::reset, 2, 9}, {Event::user4, 3, 10}}));
    const List toTwo{{Event::user1, 1, 0xFFFFFFFF}, {Event::user2, 1, 7}, {Event::user4, 3, 10}};
    EXPECT_EQ(atTwo.until({Event::user4, 3, 10}), toTwo);
    EXPECT_EQ(alsoAtTwo.until({Event::user4, 3, 10}), toTwo);
    EXPECT_EQ(atThree.until({Event::reset, 2, 9}), (List{{Event::user2, 1, 7}, {Event::user3, 1, 8}, {Event::reset, 2, 9}}));
}

TEST(Events, AreToldOnceTheyAreEnabledAndHaveACallback)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    Receiver receiver(two, {Event::user4});
    EXPECT_EQ(receiver.listen(Event::user1), Status::success);
    one.send(2, Event::user1, 1);
    one.send(2, Event::user4, 1);
    EXPECT_EQ(receiver.next(1), (List{{Event::user4, 1, 1}}));
    // Not even those from before.
    EXPECT_EQ(driver().enableEvent(two, Event::user1), Status::success);
    one.send(2, Event::user1, 2);
    EXPECT_EQ(receiver.next(1), (List{{Event::user1, 1, 2}}));

    // What is enabled waits for its callback, unless it is cleared.
    EXPECT_EQ(driver().enableEvent(two, Event::user2), Status::success);
    EXPECT_EQ(driver().enableEvent(two, Event::user3), Status::success);
    one.send(2, Event::user2, 3);
    one.send(2, Event::user3, 4);
    one.send(2, Event::user3, 5);
    one.send(2, Event::user4, 6);
    EXPECT_EQ(receiver.next(1), (List{{Event::user4, 1, 6}}));
    EXPECT_EQ(driver().clearEvent(two, Event::user2), Status::success);
    receiver.listen(Event::user2);
    receiver.listen(Event::user3);
    one.send(2, Event::user2, 7);
    EXPECT_EQ(receiver.next(3), (List{{Event::user3, 1, 4}, {Event::user3, 1, 5}, {Event::user2, 1, 7}}));
}

/// Keeps a driver's thread in its first callback until it may go on.
class FirstHeld
{
public:
    std::function<void(const Told&)> callback()
    {
        return [this, first = true](const Told&) mutable {
            if (std::exchange(first, false)) {
                inside_.set_value();
                goOn_.get_future().wait();
            }
        };
    }
    void awaitFirst() { inside_.get_future().wait(); }
    void goOn() { goOn_.set_value(); }

private:
    std::promise<void> inside_;
    std::promise<void> goOn_;
};

TEST(Events, ThatWaitAreDroppedByClearing)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    FirstHeld held;
    Receiver receiver(two, {}, held.callback());
    for (const Event event : {Event::user1, Event::user2}) {
        driver().enableEvent(two, event);
        receiver.listen(event);
    }
    one.send(2, Event::user1, 1);
    held.awaitFirst();
    one.send(2, Event::user1, 2);
    one.send(2, Event::user2, 3);
    EXPECT_EQ(driver().clearEvent(two, Event::user1), Status::success);
    one.send(2, Event::user1, 4);
    held.goOn();
    EXPECT_EQ(receiver.next(3), (List{{Event::user1, 1, 1}, {Event::user2, 1, 3}, {Event::user1, 1, 4}}));
}

TEST(Events, AreFoundWhenTheirSenderDiedBeforeItRang)
{
    const OwnRings rings;
    const OpenNode two(2);
    Receiver receiver(two, {Event::user1});
    softwareCard::RingFile file(softwareCard::ringPath(rings.place()), softwareCard::RingFile::Missing::fail);
    ASSERT_TRUE(file.map(softwareCard::memoryStart));
    for (std::uint32_t data = 0; data < 3; ++data) {
        static_cast<softwareCard::RingLayout*>(file.memory())->log.publish({data, 1, 2, 1});
        EXPECT_EQ(receiver.next(1), (List{{Event::user1, 1, data}}));
    }
}

std::atomic<int> otherCallbacks{0};

TEST(Events, GoToTheLastCallback)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    Receiver receiver(two, {Event::user1, Event::user2});
    driver().enableEventCallback(two, Event::user1, [](Handle, EventInfo*) { ++otherCallbacks; });
    one.send(2, Event::user1);
    one.send(2, Event::user2);
    receiver.next(1);
    EXPECT_EQ(otherCallbacks, 1);
    receiver.listen(Event::user1);
    one.send(2, Event::user1);
    receiver.next(1);
    EXPECT_EQ(otherCallbacks, 1);
}

constexpr auto length = static_cast<std::uint32_t>(softwareCard::EventLog::length);

/// Ten more to node 2 than its ring keeps, numbered from 1.
void sendMoreThanKept(const OpenNode& from)
{
    for (std::uint32_t data = 1; data <= length + 10; ++data) {
        from.send(2, Event::user1, data);
    }
}

TEST(Events, ThatCameTooFastAreCounted)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    FirstHeld held;
    Receiver receiver(two, {Event::fifoFull}, held.callback());
    driver().enableEvent(two, Event::user1);
    receiver.listen(Event::user1);
    one.send(2, Event::user1, 0);
    held.awaitFirst();
    sendMoreThanKept(one);
    held.goOn();
    const List told = receiver.next(length + 2);
    EXPECT_EQ(told[1], (Told{Event::fifoFull, 2, 10}));
    EXPECT_EQ(told[2].data, 11u);
    EXPECT_EQ(told.back().data, length + 10);
}

TEST(Events, ThatWereLostBeforeAreNotCounted)
{
    const OwnRings rings;
    const OpenNode one(1);
    const OpenNode two(2);
    FirstHeld held;
    Receiver receiver(two, {}, held.callback());
    driver().enableEvent(two, Event::user1);
    receiver.listen(Event::user1);
    one.send(2, Event::user1, 0);
    held.awaitFirst();
    sendMoreThanKept(one);
    held.goOn();
    receiver.until({Event::user1, 1, length + 10});
    driver().enableEvent(two, Event::fifoFull);
    receiver.listen(Event::fifoFull);
    one.send(2, Event::user1, 1);
    EXPECT_EQ(receiver.next(1), (List{{Event::user1, 1, 1}}));
}

Handle openNode(const char* number)
{
    Handle handle = nullptr;
    EXPECT_EQ(driver().open(device(number).data(), &handle), Status::success);
    return handle;
}

TEST(Closing, WaitsForTheCallback)
{
    const OwnRings rings;
    const OpenNode one(1);
    Handle two = openNode("2");
    const Handle copy = two;
    std::promise<void> inside;
    std::atomic<bool> left{false};
    Receiver receiver(two, {Event::user1}, [&](const Told&) {
        inside.set_value();
        // The handle counts as closed from the first moment on.
        Node node = 0;
        while (driver().nodeId(copy, &node) == Status::success) {
            std::this_thread::yield();
        }
        left = true;
    });
    one.send(2, Event::user1);
    inside.get_future().wait();
    one.send(2, Event::user1);
    EXPECT_EQ(driver().close(&two), Status::success);
    EXPECT_TRUE(left);
    receiver.next(1);
    EXPECT_EQ(softwareCard::Ring::open(rings.place()).ring->handles().size(), 1u);
}

TEST(Closing, IsPossibleInTheCallback)
{
    const OwnRings rings;
    const OpenNode one(1);
    Handle two = openNode("2");
    std::promise<Status> closed;
    Receiver receiver(two, {Event::user1}, [&](const Told&) { closed.set_value(driver().close(&two)); });
    one.send(2, Event::user1);
    one.send(2, Event::user1);
    EXPECT_EQ(closed.get_future().get(), Status::success);
    receiver.next(1);
    EXPECT_EQ(two, nullptr);
}

TEST(Closing, IsSafeInAFlood)
{
    const OwnRings rings;
    std::atomic<bool> stop{false};
    const auto flood = [&](Node node) {
        const OpenNode sender(node);
        while (!stop) {
            EXPECT_EQ(sender.send(allNodes, Event::user1), Status::success);
        }
    };
    std::thread senders[] = {std::thread(flood, Node{1}), std::thread(flood, Node{2})};
    for (int round = 0; round < 50; ++round) {
        Handle handle = openNode("3");
        std::atomic<bool> isOpen{true};
        Receiver receiver(handle, {Event::user1}, [&](const Told&) { EXPECT_TRUE(isOpen); });
        receiver.next(1);
        EXPECT_EQ(driver().close(&handle), Status::success);
        isOpen = false;
    }
    stop = true;
    for (std::thread& sender : senders) {
        sender.join();
    }
}

TEST(Handles, AreUsedByManyThreadsAtOnce)
{
    const OwnRings rings;
    const OpenNode shared(1);
    const OpenNode listener(2);
    Receiver receiver(listener, {Event::user1});
    constexpr std::uint32_t threads = 4;
    constexpr std::uint32_t rounds = 500;
    std::vector<std::thread> workers;
    for (std::uint32_t thread = 0; thread < threads; ++thread) {
        workers.emplace_back([&, thread] {
            for (std::uint32_t round = 0; round < rounds; ++round) {
                EXPECT_EQ(shared.write(thread * 70'000 + round * 4, round + 1), Status::success);
                EXPECT_EQ(shared.word(thread * 70'000 + round * 4), round + 1);
                shared.send(2, Event::user1, thread * rounds + round);
                driver().enableEvent(shared, Event::user2);
                driver().clearEvent(shared, Event::user2);
                if (round % 50 == 0) {
                    const OpenNode other(static_cast<Node>(10 + thread));
                    EXPECT_EQ(other.word(thread * 70'000), 1u);
                }
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
    EXPECT_EQ(receiver.next(std::size_t{threads} * rounds).size(), std::size_t{threads} * rounds);
}

} // namespace
