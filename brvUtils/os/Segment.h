#pragma once

#include "brvUtils/os/Error.h"

#include <cstddef>

namespace brvUtils::os {

/// An open and mapped segment of shared memory (opaque; null is a failed opening).
struct Segment;

/// What openSegment found.
struct SegmentOpening
{
    Segment* segment; ///< Null when it failed.
    bool created; ///< Whether this call made the object.
    ErrorCode error; ///< Of a failed opening; 0 otherwise.
};

/// Opens the segment of that name, or makes it, in one step, and maps it for reading and writing.
/// A new segment is all zero, and its memory is reserved: too little space fails here, never at the first touch.
/// \param size in bytes. An existing segment must have at least as many, counted in whole pages.
/// Names and errors as for openSemaphore, but the name must not be null; also invalidParameter for a size of 0 or more
/// than an existing segment has, diskFull or notEnoughMemory for too little space.
SegmentOpening openSegment(const char* name, std::size_t size) noexcept;

/// The first byte as mapped in this process, page-aligned; null for a null or closed segment.
void* segmentAddress(const Segment* segment) noexcept;

/// Unmaps the segment. The memory is gone with the last handle of the last process.
ErrorCode closeSegment(Segment* segment) noexcept;

} // namespace brvUtils::os
