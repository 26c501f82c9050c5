#pragma once

#include "brvUtils/time/Lateness_benchmark.h"

#include <vector>

namespace timers {

/// Something that beats.
struct BeatSource
{
    const char* name;
    void (*beat)(BeatLog&); ///< Starts the log and beats until it is full; returns at once when it was not started fairly.
};

/// TimerWin32, and TimedSemaphore in its modes.
const std::vector<BeatSource>& ourSources();

/// What a user would write without the library, one thread each.
const std::vector<BeatSource>& peerSources();

/// The bare call to sleep until a moment, by a thread that lets the system take no time of its own.
BeatSource limitSource();

/// Lets the source beat on a thread of its own, so that nothing that one sets for its thread is there for the next.
/// \throw std::runtime_error when the system refuses it, or is so busy that it never starts undisturbed.
Lateness measure(const BeatSource& source, std::int64_t period, double seconds);

} // namespace timers
