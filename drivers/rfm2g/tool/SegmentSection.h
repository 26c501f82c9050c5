#pragma once

#include "rfm2g/Ring.h"

#include <cstdint>
#include <string>

namespace rfm2gCard {

using softwareCard::Offset;

constexpr int partCount = 256; ///< Of a segment, each with a checksum of 4 bytes behind the segment's bytes.

/// Where a section of a file "shm.cfg" puts a segment on the card.
class SegmentSection
{
public:
    /// \param file path, UTF-8. \param size of the segment in bytes, with its version record.
    /// \throw Fault when there is no such section, it is not of the type "VMIC", or has no address that can be read.
    SegmentSection(const std::string& file, const std::string& section, Offset size);

    /// \throw Fault unless the segment with its checksums lies within a card of that many bytes.
    void requireFitting(Offset card) const;

    Offset address() const { return address_; }
    Offset checksumAddress(int part) const;

private:
    std::string name_; ///< Of file and section, for faults.
    Offset address_ = 0;
    Offset size_;
};

/// What stands on the card behind a segment for each part: the sum of its bytes, each taken as signed.
std::uint32_t checksum(const unsigned char* bytes, std::size_t count);

} // namespace rfm2gCard
