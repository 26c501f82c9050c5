#include "rfm2g/EventLog.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <thread>
#include <vector>

namespace {

using softwareCard::EventLog;
using softwareCard::SentEvent;
using brvUtils::rfm2g::allNodes;
using brvUtils::rfm2g::Node;

/// As it is in a new file.
std::unique_ptr<EventLog> emptyLog()
{
    return std::make_unique<EventLog>();
}

/// The word of shared memory that says where the end is.
std::atomic<std::uint64_t>& endOf(EventLog& log)
{
    return *reinterpret_cast<std::atomic<std::uint64_t>*>(&log);
}

bool operator==(const SentEvent& a, const SentEvent& b)
{
    return a.data == b.data && a.from == b.from && a.to == b.to && a.kind == b.kind;
}

TEST(EventLog, KeepsEventsAsTheyWerePublished)
{
    const auto log = emptyLog();
    const SentEvent events[] = {{0, 0, 255, 0}, {0xFFFFFFFF, 255, allNodes, 4}, {0x12345678, 1, 0, 3}};
    for (const SentEvent& event : events) {
        log->publish(event);
    }
    EXPECT_EQ(log->end(), 3u);
    SentEvent found{};
    for (std::uint64_t position = 0; position < 3; ++position) {
        EXPECT_EQ(log->read(position, found), EventLog::Found::event);
        EXPECT_TRUE(found == events[position]);
    }
    EXPECT_EQ(log->read(3, found), EventLog::Found::nothing);
}

TEST(EventLog, GoesOnBehindAPublisherThatDied)
{
    const auto log = emptyLog();
    for (std::uint32_t data = 0; data < EventLog::length * 2 + 5; ++data) {
        log->publish({data, 1, 2, 1});
        --endOf(*log);
        SentEvent found{};
        ASSERT_EQ(log->read(data, found), EventLog::Found::event);
        ASSERT_EQ(found.data, data);
        if (data % 2 == 0) {
            ASSERT_EQ(log->end(), data + 1);
        }
    }
}

TEST(EventLog, GivesASlowReaderTheNewestOnly)
{
    const auto log = emptyLog();
    SentEvent found{};
    for (std::uint32_t data = 0; data < EventLog::length + 3; ++data) {
        log->publish({data, 1, 2, 1});
    }
    EXPECT_EQ(log->read(2, found), EventLog::Found::gap);
    EXPECT_EQ(log->behindGap(0), 3u);
    EXPECT_EQ(log->read(3, found), EventLog::Found::event);
    EXPECT_EQ(found.data, 3u);
    // The next is published, but its publisher died before it moved the end.
    log->publish({0, 1, 2, 1});
    --endOf(*log);
    EXPECT_EQ(log->read(3, found), EventLog::Found::gap);
    EXPECT_EQ(log->behindGap(3), 4u);
}

TEST(EventLog, GoesRoundItsLaps)
{
    // The laps of the slots come from a number of 12 bits: just before it starts again.
    constexpr std::uint64_t lastLap = 4094;
    const auto log = emptyLog();
    auto* const slots = reinterpret_cast<std::atomic<std::uint64_t>*>(reinterpret_cast<char*>(log.get()) + 64);
    for (std::uint64_t slot = 0; slot < EventLog::length; ++slot) {
        slots[slot] = lastLap << 52;
    }
    std::uint64_t position = lastLap * EventLog::length;
    endOf(*log) = position;
    SentEvent found{};
    EXPECT_EQ(log->read(position, found), EventLog::Found::nothing);
    for (std::uint32_t data = 0; data < EventLog::length * 4; ++data, ++position) {
        log->publish({data, 1, 2, 1});
        ASSERT_EQ(log->read(position, found), EventLog::Found::event);
        ASSERT_EQ(found.data, data);
        ASSERT_EQ(log->read(position + 1, found), EventLog::Found::nothing);
    }
    // A whole round of all laps later the same lap is not taken for the same event.
    EXPECT_EQ(log->read(position - 4096 * EventLog::length, found), EventLog::Found::gap);
}

TEST(EventLog, LosesNothingOfManyPublishers)
{
    const auto log = emptyLog();
    constexpr std::uint32_t publishers = 4;
    constexpr std::uint32_t each = 20'000;
    std::vector<std::thread> threads;
    for (std::uint32_t publisher = 0; publisher < publishers; ++publisher) {
        threads.emplace_back([&, publisher] {
            for (std::uint32_t data = 0; data < each; ++data) {
                log->publish({data, static_cast<Node>(publisher), allNodes, 1});
            }
        });
    }
    std::uint64_t position = 0;
    std::uint64_t lost = 0;
    std::uint64_t told = 0;
    std::array<std::int64_t, publishers> last{-1, -1, -1, -1};
    while (told + lost < std::uint64_t{publishers} * each) {
        SentEvent event{};
        const EventLog::Found found = log->read(position, event);
        if (found == EventLog::Found::event) {
            EXPECT_GT(event.data, last[event.from]);
            last[event.from] = event.data;
            ++told;
            ++position;
        } else if (found == EventLog::Found::gap) {
            const std::uint64_t goOn = log->behindGap(position);
            lost += goOn - position;
            position = goOn;
        } else {
            std::this_thread::yield();
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(position, log->end());
    EXPECT_EQ(position, std::uint64_t{publishers} * each);
}

} // namespace
