#include "TrafficModel.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/geometry/CoordinateConventions.h>

#include <algorithm>
#include <cmath>

namespace suite {

namespace {

// How they drive, in metres and seconds.
constexpr double strongest = 1.5; // acceleration
constexpr double comfortable = 2.0; // deceleration
constexpr double hardest = 8.0; // deceleration
constexpr double standingGap = 2.5; // between two that stand
constexpr double headway = 1.2; // seconds behind the one in front
constexpr double startingGap = 5.0; // the least at the start

/// Who comes next in a lane.
struct Leader
{
    double gap = 0.0; ///< From bumper to bumper, m.
    double speed = 0.0; ///< m/s
};

double freeGap(double ahead)
{
    return ahead - vehicleLength;
}

} // namespace

TrafficModel::TrafficModel(const ClosedRoad& road, const TrafficPlans& plans)
    : road_(road)
    , plans_(plans)
{
    const auto apart = [&](double a, double b) {
        return freeGap(std::min(road_.ahead(a, b), road_.ahead(b, a))) >= startingGap;
    };
    for (const TrafficPlan& plan : plans_) {
        if (std::abs(plan.lane) > ClosedRoad::mostLanes || !(plan.speed > 0.0 && plan.speed <= 100.0)) {
            throw brvUtils::ConfigurationError("a vehicle of the traffic has no such lane or speed");
        }
        const auto isInTheWay = [&](const TrafficPlan& other) {
            return &other != &plan && other.lane == plan.lane && !apart(other.start, plan.start);
        };
        if ((plan.lane == 0 && !apart(0.0, plan.start)) || std::any_of(plans_.begin(), plans_.end(), isInTheWay)) {
            throw brvUtils::ConfigurationError("a vehicle of the traffic starts where another one or the ego does");
        }
    }
}

void TrafficModel::begin(double egoPlace)
{
    for (int number = 0; number < trafficCount; ++number) {
        TrafficVehicle& vehicle = state_.vehicles[number];
        vehicle.lane = plans_[number].lane;
        vehicle.speed = plans_[number].speed;
        place(vehicle, egoPlace + plans_[number].start);
    }
    state_.time = 0.0;
}

void TrafficModel::step(const EgoOnRoad& ego)
{
    // All decide before the first one moves.
    double accelerations[trafficCount];
    for (int number = 0; number < trafficCount; ++number) {
        accelerations[number] = acceleration(number, ego);
    }
    for (int number = 0; number < trafficCount; ++number) {
        TrafficVehicle& vehicle = state_.vehicles[number];
        const double before = vehicle.speed;
        vehicle.speed = std::max(0.0, before + accelerations[number] * frameLength);
        const double driven = (before + vehicle.speed) / 2.0 * frameLength;
        place(vehicle, vehicle.place + driven / road_.stretch(vehicle.place, static_cast<int>(vehicle.lane)));
    }
    ++state_.frame;
    state_.time += frameLength;
}

/// Its own, or that of the ego when this one comes near from behind.
double TrafficModel::wantedSpeed(int number, const EgoOnRoad& ego) const
{
    const TrafficVehicle& vehicle = state_.vehicles[number];
    const bool egoComes = vehicle.lane == 0 && freeGap(road_.ahead(ego.place, vehicle.place)) < 10.0 + 3.0 * ego.speed;
    return egoComes ? std::max(plans_[number].speed, ego.speed + 2.0) : plans_[number].speed;
}

double TrafficModel::acceleration(int number, const EgoOnRoad& ego) const
{
    const TrafficVehicle& vehicle = state_.vehicles[number];
    Leader leader{road_.length(), vehicle.speed}; // nobody
    const auto look = [&](double place, double speed) {
        const double gap = freeGap(road_.ahead(vehicle.place, place));
        leader = gap < leader.gap ? Leader{gap, speed} : leader;
    };
    for (const TrafficVehicle& other : state_.vehicles) {
        if (&other != &vehicle && other.lane == vehicle.lane) {
            look(other.place, other.speed);
        }
    }
    if (vehicle.lane == 0) {
        look(ego.place, ego.speed);
    }

    const double approach = vehicle.speed * (vehicle.speed - leader.speed) / (2.0 * std::sqrt(strongest * comfortable));
    const double wantedGap = standingGap + std::max(0.0, headway * vehicle.speed + approach);
    const double crowd = wantedGap / std::max(leader.gap, 0.1);
    const double haste = vehicle.speed / wantedSpeed(number, ego);
    return std::max(-hardest, strongest * (1.0 - std::pow(haste, 4) - crowd * crowd));
}

void TrafficModel::place(TrafficVehicle& vehicle, double place) const
{
    vehicle.place = road_.wrapped(place);
    brvUtils::copyXYZHPRFromMark(vehicle.pose, road_.poseAt(vehicle.place, static_cast<int>(vehicle.lane)));
}

} // namespace suite
