#pragma once

#include "SegmentSection.h"

#include "rfm2g/RingPlace.h"

#include <cstdint>
#include <string>
#include <vector>

/// \file
/// What the program does. Each function tells its result on the standard output.
/// All: \throw Fault when the command cannot be done; nothing is changed then.

namespace rfm2gCard {

using softwareCard::RingPlace;

/// A segment that a "shm.cfg" names.
struct SegmentName
{
    std::string file; ///< Path, UTF-8.
    std::string section;
    Offset size = 0; ///< Bytes, with the version record.
};

/// The rings of a folder, or the one that is named.
void list(const RingPlace& place);

/// A dump of the ring's memory. Runs of equal rows are shown by a star.
void show(const RingPlace& place, Offset from, Offset length);

/// How the faults of the ring stand, or the one that is named. \param name empty for all.
void showFaults(const RingPlace& place, const std::string& name);

/// Changes one fault and shows how it stands. \param values not empty, see withFault.
void setFault(const RingPlace& place, const std::string& name, const std::vector<std::string>& values);

/// Ends all faults.
void clearFaults(const RingPlace& place);

/// Turns over the bits of the word there, so that the second time mends it.
void damage(const RingPlace& place, Offset at);

/// The same for the checksum of a part of a segment.
void damage(const RingPlace& place, const SegmentName& segment, int part);

/// Writes the version record of a composite segment and its checksum. Makes the ring when there is none.
/// \param cardSize in bytes, of a ring that is made.
void writeVersion(const RingPlace& place, const SegmentName& segment, std::int16_t version, Offset cardSize);

void remove(const RingPlace& place);

} // namespace rfm2gCard
