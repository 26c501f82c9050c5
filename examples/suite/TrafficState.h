#pragma once

#include <cstdint>

namespace suite {

constexpr int trafficCount = 5; ///< Vehicles besides the ego.
constexpr double vehicleLength = 4.5; ///< Of each, m.
constexpr double vehicleWidth = 1.8; ///< m

/// A vehicle of the traffic. These are the bytes in shared memory, on every system, as all here.
struct TrafficVehicle
{
    double pose[6] = {}; ///< x, y, z, heading, pitch, roll of its middle on the ground, m and rad.
    double speed = 0.0; ///< m/s
    double place = 0.0; ///< Along the road, m.
    std::int64_t lane = 0;
};
static_assert(sizeof(TrafficVehicle) == 72, "no gaps, so that every compiler lays it out alike");

/// What the traffic tells at each of its beats.
struct TrafficState
{
    std::int64_t frame = 0; ///< Steps simulated so far.
    std::int64_t stamp = 0; ///< When it was written, see clockNow; 0: never.
    double time = 0.0; ///< Simulated seconds.
    TrafficVehicle vehicles[trafficCount];
};
static_assert(sizeof(TrafficState) == 384, "no gaps, so that every compiler lays it out alike");

} // namespace suite
