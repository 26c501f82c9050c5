#pragma once

#include "TrafficState.h"

namespace suite {

/// A vehicle as the sensor has it. These are the bytes in shared memory, on every system, as all here.
struct SensorTarget
{
    double position[3] = {}; ///< x ahead, y to the left, z up, in the frame of the sensor, m.
    double distance = 0.0; ///< m
    double bearing = 0.0; ///< From straight ahead to the left, rad.
    std::int64_t inView = 0; ///< 1: within range and field of view. Who hides behind others counts, too.
};
static_assert(sizeof(SensorTarget) == 48, "no gaps, so that every compiler lays it out alike");

/// What the sensor tells at each of its beats, with all that it comes from, so that it belongs together. Poses are x, y, z,
/// heading, pitch, roll in the world, m and rad.
struct SensorView
{
    std::int64_t frame = 0; ///< Looks so far.
    std::int64_t stamp = 0; ///< When it was written, see clockNow; 0: never.
    double ego[6] = {}; ///< The ego's, see EgoTrack.
    double sensor[6] = {}; ///< The sensor's.
    TrafficState traffic; ///< The traffic that it looked at.
    SensorTarget targets[trafficCount]; ///< In the order of the traffic.
};
static_assert(sizeof(SensorView) == 736, "no gaps, so that every compiler lays it out alike");

} // namespace suite
