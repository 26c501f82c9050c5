#pragma once

#include <string>

#include <Utilities/export.h>

/// What the suite asks about the system that it runs on. Every function may be called from any thread.
namespace Utilities::System {

/// Name of the user that the process runs as, in UTF-8: the same text in every process of that user.
/// Where the system knows no name for the user it is the user's number; empty only when the system refuses to answer.
UTILITIES_API std::string GetEffectiveUserName();

} // namespace Utilities::System
