#pragma once

#include "testing/BenchmarkTable.h"

/// The rows that take two processes.
namespace exchange {

/// Two processes put and get the same part as fast as they can: wall time per exchange of either.
brvTesting::BenchmarkRow contendedExchange();

/// One process frees a semaphore, the other answers with a second one: time there and back.
brvTesting::BenchmarkRow pingPong();

/// The processor time of a wait that is answered after 5 ms.
brvTesting::BenchmarkRow processorTimeOfAWait();

} // namespace exchange
