#pragma once

#include "brvUtils/os/ChildProcess.h"

#include <string>

namespace brvUtils::os {

/// The command line that programs split into the command's program and arguments again.
std::wstring commandLineOf(const ChildCommand& command);

/// The block of this process's variables and the command's, as the system takes it.
std::wstring environmentBlockOf(const ChildCommand& command);

} // namespace brvUtils::os
