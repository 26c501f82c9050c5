#pragma once

#include "Utilities/export.h"

#include <chrono>

namespace Utilities {

/// A stopwatch on the system's monotonic clock: setting the date of the computer changes nothing.
///
/// Starts at zero when it is made. One thread at a time; a copy goes on from where the original stands.
class UTILITIES_API Clock
{
public:
    Clock();

    /// Starts again at zero.
    void init();

    /// The seconds since the last start, in steps of 100 ns or finer.
    double run() const;

private:
    std::chrono::steady_clock::time_point start_;
};

} // namespace Utilities
