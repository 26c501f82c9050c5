#pragma once

#include "brvUtils/os/Error.h"

#include <string>
#include <vector>

namespace brvUtils::os {

/// The process's arguments as the system itself keeps them, the program first, in the process's 8-bit code page.
/// `error::notSupported` where the system keeps none and the arguments of `main` are the list; another code when the
/// system failed. `arguments` is then left as it was.
ErrorCode commandLine(std::vector<std::string>& arguments);

} // namespace brvUtils::os
