#pragma once

#include <Scheduling/export.h>

/// The time that all modules of a distributed simulation share, counted in ticks. What a scheduler offers is derived from
/// it, and says which threads may ask. The order of the operations is kept for callers, as is the global scope.
class SCHEDULING_API ExecutionClock
{
public:
    virtual ~ExecutionClock();

    /// Lets the time run on.
    virtual void start() = 0;

    /// Holds the time.
    virtual void stop() = 0;

    /// The ticks so far. A scheduler may also set them back.
    virtual long long getCount() const = 0;

    /// The ticks of one second; never 0.
    virtual long long getTicksPerSecond() const = 0;
};
