#pragma once

#include "brvUtils/os/linux/Descriptor.h"

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
/// \param plain whether nothing stands behind a range, so that what nobody has written there is zero.
/// \return how many there are; no more than `room`.
std::size_t readMemoryMap(MemoryRange* ranges, bool* plain, std::size_t room);

/// Finds in plain ranges what was never written to: some programs reserve more memory than could be read in a day. Takes
/// nothing from the heap, but is too large for a small stack.
class UntouchedPages
{
public:
    UntouchedPages();

    /// How many bytes from a page's address on nobody has written to, in steps: 0 for a page that has, or when the system
    /// does not tell.
    /// \param size of what is left of the range.
    std::uint64_t from(std::uint64_t address, std::uint64_t size);

private:
    Descriptor file_;
    std::uint64_t pages_[4096]; ///< What the system says of each, from the first one on.
    std::uint64_t first_ = 0; ///< Number of a page.
    std::uint64_t count_ = 0;
};

} // namespace brvUtils::os
