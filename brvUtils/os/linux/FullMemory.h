#pragma once

#include "brvUtils/os/linux/DumpTarget.h"

namespace brvUtils::os {

/// Puts all memory of the calling process, as it is, behind a minidump: a stream of type 9 (count, place of the bytes, and start
/// and size of each range; then the bytes) and a new directory of streams that lists it with the others. What is no memory
/// (devices), what its owner keeps out of dumps and what cannot be read is left out; pages that hold zeros take no space.
/// \param target empty; gets the whole dump. \param minidump a file that holds it, from its start; its header is changed.
bool appendWithFullMemory(int minidump, DumpTarget& target, CopyNotes& notes);

/// Copies a minidump as it is.
bool appendMinidump(int minidump, DumpTarget& target);

} // namespace brvUtils::os
