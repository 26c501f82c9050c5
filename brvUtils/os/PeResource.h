#pragma once

#include "brvUtils/os/FileBytes.h"

namespace brvUtils::os {

/// Where the version resource lies in an executable or library of Windows, 32 or 64 bit. Nothing when the file is no such one
/// or has none. What is told need not be within the file.
FilePart peVersionResource(const InputFile& file);

/// How much of the version resource's tree is within the file.
enum class PeTree { none, toTheData, withTheData };

/// Looks at all languages: one that finds its own way through the tree comes by nothing that is outside the file.
PeTree peVersionTree(const InputFile& file);

} // namespace brvUtils::os
