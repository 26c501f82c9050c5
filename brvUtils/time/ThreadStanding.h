#pragma once

#include "brvUtils/export.h"

#include <string>

namespace brvUtils {

/// How the system schedules the calling thread, for people, in the system's own terms: "round-robin 1", "normal, nice 0",
/// "thread priority 15 in a process of class normal". Asked from within a timer's callback it tells what that one had.
BRVUTILS_API std::string standingOfCurrentThread();

/// The clock by which the library's pollers and time measurements go, and its resolution, in the system's terms.
BRVUTILS_API std::string steadyClockName();

} // namespace brvUtils
