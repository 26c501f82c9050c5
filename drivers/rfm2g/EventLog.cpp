#include "rfm2g/EventLog.h"

#include <algorithm>

namespace softwareCard {

namespace {

using brvUtils::rfm2g::allNodes;
using brvUtils::rfm2g::Node;

// A slot: the data word, and above it the sender (8 bits), the node addressed (9), the kind (3) and the lap (12), which tells
// in the how manieth round through the log the slot was filled.
constexpr unsigned lapShift = 52;
constexpr std::uint64_t laps = 1u << 12;
constexpr std::uint64_t toAll = 256;

std::uint64_t lapOfWord(std::uint64_t word)
{
    return word >> lapShift;
}

/// The first lap is 1, so that slots of zeros are those of the lap before it.
std::uint64_t lapOf(std::uint64_t position)
{
    return (position / EventLog::length + 1) % laps;
}

std::uint64_t lapBefore(std::uint64_t position)
{
    return (position / EventLog::length) % laps;
}

std::uint64_t pack(const SentEvent& event)
{
    const std::uint64_t to = event.to == allNodes ? toAll : event.to;
    return std::uint64_t{event.data} | std::uint64_t{event.from} << 32 | to << 40 | std::uint64_t{event.kind} << 49;
}

SentEvent unpack(std::uint64_t word)
{
    const std::uint64_t to = (word >> 40) & 0x1FF;
    return {static_cast<std::uint32_t>(word), static_cast<Node>((word >> 32) & 0xFF), to == toAll ? allNodes : static_cast<Node>(to),
        static_cast<unsigned>((word >> 49) & 7)};
}

} // namespace

void EventLog::publish(const SentEvent& event)
{
    for (const std::uint64_t packed = pack(event);;) {
        std::uint64_t position = end();
        std::atomic<std::uint64_t>& slot = slots_[position % length];
        std::uint64_t before = slot.load();
        // Even if this process stood still here for all laps, the slot would take the event only as the next one.
        if (lapOfWord(before) == lapBefore(position) && slot.compare_exchange_strong(before, packed | lapOf(position) << lapShift)) {
            end_.compare_exchange_strong(position, position + 1);
            return;
        }
    }
}

std::uint64_t EventLog::end()
{
    std::uint64_t position = end_.load();
    while (lapOfWord(slots_[position % length].load()) == lapOf(position)) {
        if (end_.compare_exchange_strong(position, position + 1)) {
            ++position;
        }
    }
    return position;
}

bool EventLog::isOverwritten(std::uint64_t position) const
{
    // One event may be published ahead of the end.
    return static_cast<std::int64_t>(end_.load() - position) > static_cast<std::int64_t>(length);
}

EventLog::Found EventLog::read(std::uint64_t position, SentEvent& event) const
{
    const std::uint64_t word = slots_[position % length].load();
    if (isOverwritten(position)) {
        return Found::gap;
    }
    if (lapOfWord(word) == lapOf(position)) {
        event = unpack(word);
        return Found::event;
    }
    return lapOfWord(word) == lapBefore(position) ? Found::nothing : Found::gap;
}

std::uint64_t EventLog::behindGap(std::uint64_t position) const
{
    const std::uint64_t end = end_.load();
    return std::max(position + 1, end > length ? end - length : 0);
}

} // namespace softwareCard
