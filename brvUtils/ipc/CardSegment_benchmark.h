#pragma once

#include "brvUtils/ipc/Exchangers_benchmark.h"
#include "brvUtils/ipc/ShmVmic.h"
#include "testing/Child.h"

#include <Utilities/ConfigFile.h>

#include <cstdint>

/// Segments of one part on the card. The ring is new, so the version of their layout is that of a blank card: 0.
namespace reflective {

/// The nodes of this process and of the one that it exchanges with.
constexpr int ownNode = 1;
constexpr int otherNode = 2;

/// For CompositeShm: a segment on the card of that node. 0 for the interrupt: each read looks at the card.
template <int node, int interrupt>
brvUtils::IShm* onCard(char const* name, std::size_t size, short version, bool)
{
    Utilities::ConfigFile config;
    config.setSection("card");
    config.setEntry("BaseAddress", "card", interrupt == 0 ? "0" : "1000000");
    config.setEntry("Interrupt", "card", std::to_string(interrupt));
    config.setEntry("DeviceId", "card", std::to_string(node));
    return brvUtils::ShmVmic::New(name, size, version, config);
}

class Segment : brvUtils::CompositeShm
{
public:
    Segment(brvUtils::ShmFactory shmFactory, const std::string& name, std::size_t size, brvUtils::SemaphoreFactory semaphoreFactory = brvUtils::SemaphoreWin32::New)
        : CompositeShm(shmFactory, semaphoreFactory, name.c_str(), size, 0, 0)
        , block_(1, size)
    {
        addPart(block_);
    }
    void put() { CompositeShm::put(block_, -1.0); }
    void get() { CompositeShm::get(block_, -1.0); }
    std::vector<char>& bytes() { return block_.bytes; }

private:
    exchange::Block block_;
};

/// What a process at the other end tells of being woken.
struct Mailbox
{
    std::atomic<std::uint64_t> word; ///< The bare wake's.
    std::atomic<std::int64_t> woken; ///< When, in nanoseconds of the steady clock; 0: not yet.
};

/// A segment that another node keeps as well, by interrupts, in a process of its own whose semaphores are its own too, as
/// on another computer.
class SharedByInterrupt
{
public:
    SharedByInterrupt(const std::string& name, std::size_t size);
    void put() { segment_.put(); }
    void get() { segment_.get(); }
    /// Its `woken` is the moment when the other node had refreshed the part.
    Mailbox& mailbox() { return *static_cast<Mailbox*>(mailbox_.getPtr()); }

private:
    brvUtils::ShmWin32 mailbox_;
    Segment segment_;
    brvTesting::Child other_;
};

} // namespace reflective
