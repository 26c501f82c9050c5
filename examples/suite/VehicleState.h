#pragma once

#include <chrono>
#include <cstdint>

namespace suite {

/// A moment on the clock that all processes of a computer share, in nanoseconds. It only ever runs on.
inline std::int64_t clockNow()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Seconds from a moment on that clock until now.
inline double secondsSince(std::int64_t moment)
{
    constexpr double nanoseconds = 1e9; // in a second
    return static_cast<double>(clockNow() - moment) / nanoseconds;
}

/// What the vehicle tells 200 times in each simulated second. These are the bytes in shared memory, on every system.
struct VehicleState
{
    std::int64_t frame = 0; ///< Steps simulated so far.
    std::int64_t stamp = 0; ///< When it was written, see clockNow; 0: never.
    double time = 0.0; ///< Simulated seconds.
    double speed = 0.0; ///< m/s
    double target = 0.0; ///< The speed of the driving cycle, m/s.
    double acceleration = 0.0; ///< m/s2
    double distance = 0.0; ///< m
    double force = 0.0; ///< Of engine and brakes, N.
    std::int64_t gear = 0; ///< That the cycle prescribes.
};
static_assert(sizeof(VehicleState) == 72, "no gaps, so that every compiler lays it out alike");

/// What the vehicle tells once, when it starts.
struct VehicleRun
{
    double speedFactor = 0.0; ///< Simulated seconds per second; 0: no vehicle has started yet.
    double cycleDuration = 0.0; ///< Seconds.
    char cycleName[16] = {}; ///< Ends with a zero.
};
static_assert(sizeof(VehicleRun) == 32, "no gaps, so that every compiler lays it out alike");

} // namespace suite
