#include "rfm2g/Member.h"

#include "rfm2g/RingFile.h"
#include "rfm2g/RingLayout.h"
#include "rfm2g/Settings.h"
#include "rfm2g/System.h"

#include <algorithm>

namespace softwareCard {

using brvUtils::rfm2g::Status;

namespace {

// A sender may be killed when it has sent an event and not yet rung.
constexpr std::chrono::milliseconds longestSleep{100};

std::uint32_t bit(Event event)
{
    return 1u << static_cast<unsigned>(event);
}

} // namespace

MemberOpening Member::open(const Settings& settings)
{
    RingOpening opening = Ring::openLocked(settings.place, settings.size);
    if (!opening.ring) {
        return {nullptr, Status::osError, opening.problem};
    }
    RingFile& file = *opening.ring->file_;
    if (opening.ring->layout_.openRefused != 0) {
        file.unlock();
        return {nullptr, Status::driverError, ""};
    }
    unsigned place = 0;
    while (place < placeCount && !file.take(place)) {
        ++place;
    }
    if (place < placeCount) {
        RingPlaceEntry& entry = opening.ring->layout_.entries[place];
        entry.process = thisProcess();
        entry.node = settings.node;
        entry.events = 0;
        entry.sleeps = 0;
        std::atomic<std::uint32_t>& used = opening.ring->layout_.placesUsed;
        used = std::max(used.load(), place + 1);
    }
    file.unlock();
    if (place == placeCount) {
        return {nullptr, Status::osError, "the ring \"" + settings.place.ring + "\" is open 256 times"};
    }
    return {std::unique_ptr<Member>(new Member(std::move(opening.ring), place, settings.node)), Status::success, ""};
}

Member::Member(std::unique_ptr<Ring> ring, unsigned place, Node node)
    : ring_(std::move(ring)), bells_(ring_->layout_.start.number), place_(place), node_(node)
{
}

Member::~Member()
{
    entry().events = 0;
    ring_->file_->free(place_);
}

RingPlaceEntry& Member::entry() const
{
    return ring_->layout_.entries[place_];
}

bool Member::isMuted() const
{
    return ring_->layout_.ringOpen != 0 || ring_->layout_.silent.test(node_);
}

bool Member::write(Offset to, const void* from, Offset length)
{
    RingLayout& ring = ring_->layout_;
    const std::uint32_t lost = ring.lostWrites;
    return isMuted() || (lost != 0 && ++ring.writes % lost == 0) || ring_->write(to, from, length);
}

EventLog& Member::log()
{
    return ring_->layout_.log;
}

void Member::send(const SentEvent& event)
{
    if (isMuted()) {
        return;
    }
    log().publish(event);
    const std::uint32_t kind = bit(static_cast<Event>(event.kind));
    auto& entries = ring_->layout_.entries;
    const unsigned used = std::min(ring_->layout_.placesUsed.load(), placeCount);
    for (unsigned place = 0; place < used; ++place) {
        RingPlaceEntry& other = entries[place];
        if ((other.events & kind) != 0 && event.reaches(static_cast<Node>(other.node.load()))) {
            bells_.ring(place, other.sleeps);
        }
    }
}

void Member::enable(Event event)
{
    entry().events |= bit(event);
}

bool Member::hasEnabled(Event event) const
{
    return (entry().events & bit(event)) != 0;
}

void Member::fallAsleep()
{
    entry().sleeps = 1;
}

void Member::sleep()
{
    bells_.sleep(place_, entry().sleeps, longestSleep);
}

void Member::stayAwake()
{
    entry().sleeps = 0;
}

void Member::wake()
{
    bells_.ring(place_, entry().sleeps);
}

} // namespace softwareCard
