#pragma once

#include "brvUtils/ipc/Rfm2g.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace softwareCard {

/// How many kinds of events can be sent.
constexpr unsigned sentKinds = 5;

/// An interrupt on its way.
struct SentEvent
{
    std::uint32_t data;
    brvUtils::rfm2g::Node from;
    brvUtils::rfm2g::Node to; ///< A node or brvUtils::rfm2g::allNodes.
    unsigned kind; ///< Below sentKinds.

    bool reaches(brvUtils::rfm2g::Node node) const { return to == brvUtils::rfm2g::allNodes ? node != from : node == to; }
};

/// The last interrupts of a ring, in shared memory; the same for all nodes. All zero is an empty one.
///
/// An event is published by one change of one word, so that a process killed anywhere leaves no gap and no half event. Each
/// reader keeps its own position, which only grows.
class EventLog
{
public:
    static constexpr std::uint64_t length = 16'384;
    enum class Found { nothing, event, gap };

    void publish(const SentEvent& event);

    /// The position of the next event that will be published.
    std::uint64_t end();

    /// The event at a position: nothing when it is still to come, a gap when newer ones have overwritten it.
    Found read(std::uint64_t position, SentEvent& event) const;

    /// Where a reader goes on after a gap at `position`.
    std::uint64_t behindGap(std::uint64_t position) const;

private:
    bool isOverwritten(std::uint64_t position) const;

    /// May be one behind: whoever published moves it, and when that one died, the next.
    alignas(64) std::atomic<std::uint64_t> end_;
    alignas(64) std::array<std::atomic<std::uint64_t>, length> slots_;
};
static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

} // namespace softwareCard
