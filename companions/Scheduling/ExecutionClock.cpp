#include "Scheduling/ExecutionClock.h"

ExecutionClock::~ExecutionClock() = default;
