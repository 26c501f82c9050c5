#pragma once

#include "brvUtils/os/Error.h"
#include "brvUtils/os/linux/Handle.h"

#include <sys/types.h>

/// The memory of a segment: a file of its own beside the table, named after the slot.
namespace brvUtils::os {

/// Makes the file with all its memory reserved. Nothing is left of it when that fails.
ErrorCode createSegmentFile(int folder, std::uint32_t slot, std::size_t size, mode_t mode);

/// Maps the file into the handle's `view` and `size` (whole pages).
ErrorCode mapSegmentFile(int folder, std::uint32_t slot, std::size_t size, Handle& handle);

/// Opens the file for reading only. Negative, with `errno`, when there is none.
int openSegmentFileToLook(int folder, std::uint32_t slot);

void removeSegmentFile(int folder, std::uint32_t slot);

/// Removes those of all slots, when nobody is left who could have one open.
void removeAllSegmentFiles(int folder);

/// `size` in whole pages, as Windows counts segments.
std::size_t wholePages(std::size_t size);

} // namespace brvUtils::os
