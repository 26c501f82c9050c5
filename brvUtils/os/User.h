#pragma once

#include <string>

namespace brvUtils::os {

/// Name of the user that the process runs as, in UTF-8; the user's number where the system knows no name for it, and
/// empty when the system does not answer.
std::string effectiveUserName();

} // namespace brvUtils::os
