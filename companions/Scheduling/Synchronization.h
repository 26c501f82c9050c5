#pragma once

#include <Scheduling/export.h>

class ExecutionClock;

/// What ties a module to the others of a distributed simulation: it hands out the clock that they share. Any thread may ask.
/// At global scope for callers.
class SCHEDULING_API Synchronization
{
public:
    /// \param executionClock not owned; null for none. It must live as long as anybody uses what is handed out.
    explicit Synchronization(ExecutionClock* executionClock = nullptr);

    /// The clock it was given; null for none.
    ExecutionClock* getExecutionClock() const;

private:
    ExecutionClock* executionClock_;
};
