#pragma once

#include "brvUtils/os/InputFile.h"

#include <cstddef>

namespace brvUtils {

/// How many of a file's first variables can be given to matio, which believes sizes that it reads: those before the first one
/// that claims more than the file can hold, or is no variable at all. Their values are not looked at.
std::size_t soundMat4Variables(const os::InputFile& file);
std::size_t soundMat5Variables(const os::InputFile& file);

} // namespace brvUtils
