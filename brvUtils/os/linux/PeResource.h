#pragma once

#include "brvUtils/os/linux/FileBytes.h"

namespace brvUtils::os {

/// Where the version resource lies in an executable or library of Windows, 32 or 64 bit. Nothing when the file is no such one
/// or has none. What is told need not be within the file.
FilePart peVersionResource(const InputFile& file);

} // namespace brvUtils::os
