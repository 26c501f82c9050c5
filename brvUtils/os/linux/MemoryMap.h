#pragma once

#include <cstddef>
#include <cstdint>

namespace brvUtils::os {

/// A range of addresses, laid out as dumps have it.
struct MemoryRange
{
    std::uint64_t start;
    std::uint64_t size;
};

/// The ranges of the calling process's memory that belong in a dump of all of it: what can be read and is neither a device
/// nor kept out of dumps (madvise). Takes nothing from the heap.
/// \return how many there are; no more than `room`.
std::size_t readMemoryMap(MemoryRange* ranges, std::size_t room);

} // namespace brvUtils::os
