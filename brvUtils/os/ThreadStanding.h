#pragma once

#include <string>

namespace brvUtils::os {

/// How the system schedules the calling thread, in its own terms: "round-robin 1", "normal, nice 0", "thread priority 15 in a process of class normal".
std::string standingOfThread();

/// The clock behind std::chrono::steady_clock and its resolution, in the system's terms.
std::string steadyClockName();

} // namespace brvUtils::os
