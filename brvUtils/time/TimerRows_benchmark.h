#pragma once

#include "testing/BenchmarkTable.h"

/// The rows that are not about beats.
namespace timers {

/// From the call that starts a thread to the first line of its work.
brvTesting::BenchmarkRow threadStart();

/// A look at whether a watched module is alive. Its source is beside the watchdog, which stands behind this folder.
brvTesting::BenchmarkRow isAlive();

} // namespace timers
