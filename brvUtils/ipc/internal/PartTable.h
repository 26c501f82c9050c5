#pragma once

#include "brvUtils/ipc/internal/Lock.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace brvUtils {

/// Where the parts of a composite segment lie, by which identifiers they are known, and their locks.
class PartTable
{
public:
    static constexpr int capacity = 256;
    static constexpr int none = -1;

    PartTable() { places_.fill(none); }

    int count() const { return count_; }
    bool isFull() const { return count_ == capacity; }

    /// Offset behind the last part.
    std::size_t end() const { return offsets_[static_cast<std::size_t>(count_)]; }
    std::size_t offset(int index) const { return offsets_[static_cast<std::size_t>(index)]; }
    Lock& lock(int index) { return locks_[static_cast<std::size_t>(index)]; }

    /// The first part with that identifier, or `none`.
    int find(int id) const
    {
        for (std::size_t place = home(id);; place = next(place)) {
            const std::int16_t index = places_[place];
            if (index == none || ids_[static_cast<std::size_t>(index)] == id) {
                return index;
            }
        }
    }

    /// Appends a part of that size, padding included. \return its index.
    int add(int id, std::size_t size, Lock lock);

    /// Drops a part; those behind it move down. The count stays: the place that becomes free holds nothing.
    void remove(int index);

private:
    // Twice the capacity: a search always meets an empty place.
    static constexpr std::size_t placeCount = 2 * capacity;

    static std::size_t home(int id) { return static_cast<std::uint32_t>(id) * 2654435769u >> 23; }
    static std::size_t next(std::size_t place) { return (place + 1) % placeCount; }
    void enter(int index);

    int count_ = 0;
    int used_ = 0; ///< Parts still there; fewer than count_ after a removal.
    std::array<std::size_t, capacity + 1> offsets_{};
    std::array<int, capacity> ids_{};
    std::array<Lock, capacity> locks_;
    std::array<std::int16_t, placeCount> places_; ///< Hash table of indices by identifier.
};

} // namespace brvUtils
