#pragma once

#include "testing/BenchmarkTable.h"

/// The rows that are not about beats.
namespace timers {

/// From the call that starts a thread to the first line of its work.
brvTesting::BenchmarkRow threadStart();

} // namespace timers
