#pragma once

#include "rfm2g/RingPlace.h"

#include "brvUtils/ipc/Rfm2g.h"

#include <bitset>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The software card: memory that nodes on one computer share as those of a fibre ring do.
namespace softwareCard {

using brvUtils::rfm2g::Event;
using brvUtils::rfm2g::Node;
using brvUtils::rfm2g::Offset;

constexpr std::size_t nodeCount = 256;

/// What is wrong with a ring, on purpose. Changes take effect at once for every process that has the ring open.
struct Faults
{
    bool ringOpen = false; ///< The ring check fails, writes and interrupts of every node are lost.
    bool openRefused = false; ///< No node can be opened; those that are open go on.
    std::uint32_t lostWrites = 0; ///< N: each Nth write of the ring is lost. 0 for none.
    std::bitset<nodeCount> silent; ///< Writes and interrupts of these nodes are lost.
};

/// A node that a living process has open.
struct OpenHandle
{
    Node node;
    std::uint32_t process;
    std::uint32_t events; ///< Those enabled: bit n stands for event n.
};

struct RingOpening;
class RingFile;
struct RingLayout;

/// A ring as this process has it open. It has no node by itself, and is not counted as a user of the ring; only on Windows it
/// keeps the ring from being removed. Any thread may call any function.
class Ring
{
public:
    /// Opens a ring, or fails with a text that says why.
    /// \param size of the memory in bytes when the ring is not there and is to be made: 64, 128 or 256 MiB. Without it the
    ///        ring has to be there. A ring that is there keeps its size.
    static RingOpening open(const RingPlace& place, std::optional<Offset> size = std::nullopt);
    ~Ring();
    Ring(const Ring&) = delete;
    Ring& operator=(const Ring&) = delete;

    /// Bytes of its memory, all of which may be used.
    Offset size() const;

    /// Whether these bytes lie within it.
    bool contains(Offset from, Offset length) const { return from <= size() && length <= size() - from; }

    /// What was never written is zero, and costs no memory to be read. \return false when the range goes beyond the memory.
    bool read(Offset from, void* to, Offset length) const;

    /// Writes whatever faults there are. \return false when the range goes beyond the memory, or when the system has too
    /// little space; nothing is written then.
    bool write(Offset to, const void* from, Offset length);

    Faults faults() const;
    /// Changes them; of several that do so, in any processes, each sees what the one before has made.
    /// \param change may throw: nothing is changed then. \return false when the system cannot lock the ring.
    bool changeFaults(const std::function<void(Faults&)>& change);

    /// Those of all processes, in no order; of processes that were killed there are none.
    std::vector<OpenHandle> handles() const;

private:
    friend class Member;
    explicit Ring(std::unique_ptr<RingFile> file);
    static RingOpening openLocked(const RingPlace& place, std::optional<Offset> size);
    char* memory() const;
    bool reserve(Offset to, Offset length);

    std::unique_ptr<RingFile> file_;
    RingLayout& layout_;
};

struct RingOpening
{
    std::unique_ptr<Ring> ring; ///< Null after a failure.
    std::string problem; ///< Why, as a line to be shown.
    bool missing = false; ///< It failed because there is no such ring, or one that its maker was killed before finishing.
};

/// Removes a ring with its memory. \return why that was not possible, such as that it has users; empty when it is gone.
std::string removeRing(const RingPlace& place);

} // namespace softwareCard
