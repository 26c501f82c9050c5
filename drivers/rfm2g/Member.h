#pragma once

#include "rfm2g/Doorbells.h"
#include "rfm2g/EventLog.h"
#include "rfm2g/Ring.h"

namespace softwareCard {

class Member;
struct RingPlaceEntry;
struct Settings;

struct MemberOpening
{
    std::unique_ptr<Member> member; ///< Null after a failure.
    brvUtils::rfm2g::Status status;
    std::string problem; ///< May be empty.
};

/// A node's place in a ring. What it writes and sends is subject to the ring's faults. Any thread may call any function.
class Member
{
public:
    /// Opens the ring, which is made when it is not there, and takes a place in it.
    static MemberOpening open(const Settings& settings);
    /// Gives the place back.
    ~Member();
    Member(const Member&) = delete;
    Member& operator=(const Member&) = delete;

    Node node() const { return node_; }
    const Ring& ring() const { return *ring_; }

    /// As Ring::write, but for what is lost.
    bool write(Offset to, const void* from, Offset length);

    void send(const SentEvent& event);
    EventLog& log();

    /// From now on senders of such events ring the bell.
    void enable(Event event);
    bool hasEnabled(Event event) const;

    // For the one thread that waits for events. It says that it falls asleep, then looks for work for the last time, and then
    // sleeps, if there is none, until the bell is rung or it is time to look by itself.

    void fallAsleep();
    void sleep();
    void stayAwake();

    /// Rings this member's own bell.
    void wake();

private:
    Member(std::unique_ptr<Ring> ring, unsigned place, Node node);
    bool isMuted() const;
    RingPlaceEntry& entry() const;

    std::unique_ptr<Ring> ring_;
    Doorbells bells_;
    unsigned place_;
    Node node_;
};

} // namespace softwareCard
