#pragma once

#include "brvUtils/os/Error.h"

#include <optional>
#include <string>

namespace brvUtils::os {

// The environment of this process, as `getenv` of all its libraries sees it and as later children inherit it. Names and
// values are UTF-8. Any thread may call these; on Linux no other thread may use the environment by other means while it
// is changed.

/// Nothing when the variable is not set.
std::optional<std::string> environmentVariable(const std::string& name);

/// Windows knows no empty variables: an empty value removes there.
ErrorCode setEnvironmentVariable(const std::string& name, const std::string& value);

/// Removing what is not set is no error.
ErrorCode removeEnvironmentVariable(const std::string& name);

} // namespace brvUtils::os
