#pragma once

#include "brvUtils/os/FileBytes.h"

#include <string>

namespace brvUtils::os {

/// Where a section lies in an ELF file, 32 or 64 bit, numbers low byte first. Nothing when the file is no such one or has no
/// section of this name. What is told need not be within the file.
FilePart elfSection(const InputFile& file, const std::string& name);

} // namespace brvUtils::os
