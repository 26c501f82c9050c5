#include "Recording.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

namespace suite {

namespace {

const std::vector<std::string> vehicleNames = {"row", "time s", "clock s", "frame", "vehicle time s", "distance m", "speed m/s",
    "target m/s", "acceleration m/s2", "force N", "gear", "age s"};
const std::vector<std::string> sensorNames = {"sensor frame", "sensor age s", "traffic frame", "ego x m", "ego y m", "ego heading rad",
    "sensor x m", "sensor y m", "sensor z m", "sensor heading rad", "sensor pitch rad", "sensor roll rad"};
const std::vector<std::string> trafficNames = {"lane", "speed m/s", "x m", "y m", "heading rad", "seen x m", "seen y m", "seen z m",
    "seen distance m", "seen bearing rad", "in view"};

// Where a row has them.
constexpr std::size_t rowColumn = 0;
constexpr std::size_t timeColumn = 1;
constexpr std::size_t clockColumn = 2;

constexpr std::chrono::milliseconds interval{500}; // so that who is killed loses less than a second

std::vector<std::string> allNames()
{
    std::vector<std::string> names = vehicleNames;
    names.insert(names.end(), sensorNames.begin(), sensorNames.end());
    for (int vehicle = 0; vehicle < trafficCount; ++vehicle) {
        for (const std::string& name : trafficNames) {
            names.push_back(Recording::trafficColumn(vehicle, name));
        }
    }
    return names;
}

double toSeconds(std::int64_t nanoseconds)
{
    return static_cast<double>(nanoseconds) * 1e-9;
}

/// In the order of their names.
void append(std::vector<double>& row, const SensorView& view, std::int64_t now)
{
    const double* const ego = view.ego;
    const double* const sensor = view.sensor;
    row.insert(row.end(), {static_cast<double>(view.frame), view.stamp != 0 ? toSeconds(now - view.stamp) : 0.0,
        static_cast<double>(view.traffic.frame), ego[0], ego[1], ego[3]});
    row.insert(row.end(), sensor, sensor + 6);
    for (int number = 0; number < trafficCount; ++number) {
        const TrafficVehicle& vehicle = view.traffic.vehicles[number];
        const SensorTarget& target = view.targets[number];
        row.insert(row.end(), {static_cast<double>(vehicle.lane), vehicle.speed, vehicle.pose[0], vehicle.pose[1], vehicle.pose[3],
            target.position[0], target.position[1], target.position[2], target.distance, target.bearing, static_cast<double>(target.inView)});
    }
}

} // namespace

Recording::Recording(const std::filesystem::path& file, double period)
    : writer_(file, allNames(), interval)
    , period_(period)
    , row_(before())
{
}

std::int64_t Recording::before() const
{
    return writer_.lastRow().empty() ? -1 : std::llround(writer_.lastRow()[rowColumn]);
}

/// Beats and time run on from the last row of an earlier recorder.
void Recording::begin(double clock)
{
    firstClock_ = origin_ = clock;
    if (!writer_.lastRow().empty()) {
        const double passed = clock - writer_.lastRow()[clockColumn];
        const double since = passed > 0.0 ? passed : period_; // the computer was switched off, and its clock began anew
        firstRow_ = row_ + std::max<std::int64_t>(1, std::llround(since / period_));
        origin_ = clock - (writer_.lastRow()[timeColumn] + since);
    }
}

void Recording::add(const VehicleState& state, const SensorView& view, std::int64_t now)
{
    const double clock = toSeconds(now);
    if (rows_++ == 0) {
        begin(clock);
    }
    // A beat may be a little early or late.
    row_ = std::max<std::int64_t>(row_ + 1, firstRow_ + std::llround((clock - firstClock_) / period_));
    std::vector<double> row = {static_cast<double>(row_), clock - origin_, clock, static_cast<double>(state.frame), state.time, state.distance,
        state.speed, state.target, state.acceleration, state.force, static_cast<double>(state.gear), toSeconds(now - state.stamp)};
    append(row, view, now);
    writer_.add(row);
}

std::string Recording::trafficColumn(int vehicle, const std::string& name)
{
    return "traffic " + std::to_string(vehicle + 1) + " " + name;
}

} // namespace suite
