#pragma once

#include "brvUtils/ipc/internal/Lock.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brvUtils {

/// Where a part of a composite segment lies, and what guards it.
struct PartPlace
{
    int id = 0; ///< By which the part is known.
    int index = 0; ///< By which the segment knows it, in all processes. It stays when a part before it goes.
    std::size_t offset = 0; ///< In the segment, in bytes.
    Lock lock;
};

/// The places of the parts of a composite segment.
class PartTable
{
public:
    static constexpr int capacity = 256;

    int count() const { return count_; }
    bool isFull() const { return count_ == capacity; }

    /// Offset behind the last part.
    std::size_t end() const { return end_; }

    /// The first part with that identifier, or null.
    PartPlace* find(int id) const
    {
        for (std::size_t slot = home(id);; slot = next(slot)) {
            PartPlace* const place = slots_[slot];
            if (place == nullptr || place->id == id) {
                return place;
            }
        }
    }

    /// Appends a part of that size, padding included.
    PartPlace& add(int id, std::size_t size, Lock lock);

    /// Drops a part; those behind it move down. The count stays: the place that becomes free holds nothing.
    void remove(const PartPlace& place);

private:
    // Twice the capacity: a search always meets an empty slot.
    static constexpr std::size_t slotCount = 2 * capacity;

    static std::size_t home(int id) { return static_cast<std::uint32_t>(id) * 2654435769u >> 23; }
    static std::size_t next(std::size_t slot) { return (slot + 1) % slotCount; }
    void enter(PartPlace& place);

    int count_ = 0;
    int used_ = 0; ///< Parts still there; fewer than count_ after a removal.
    std::size_t end_ = 0;
    std::array<PartPlace, capacity> places_;
    std::array<PartPlace*, slotCount> slots_{}; ///< Hash table by identifier.
};

} // namespace brvUtils
