#include "Scheduling/Synchronization.h"

Synchronization::Synchronization(ExecutionClock* executionClock)
    : executionClock_(executionClock)
{
}

ExecutionClock* Synchronization::getExecutionClock() const
{
    return executionClock_;
}
