#pragma once

namespace brvUtils::os {

/// How the driver of a reflective-memory card is known to the system: its library, and its devices by a number behind a
/// prefix.
extern const char* const reflectiveMemoryLibrary;
extern const char* const reflectiveMemoryDevicePrefix;

} // namespace brvUtils::os
