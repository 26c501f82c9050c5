#pragma once

#include <string>

namespace brvUtils::os {

/// Name of the user that the process runs as, in UTF-8; the user's number where the system knows no name for it. Empty
/// when the system cannot answer now: names are built of the result, and a number in one process and a name in another
/// would part them. May ask a name service and block.
std::string effectiveUserName();

} // namespace brvUtils::os
