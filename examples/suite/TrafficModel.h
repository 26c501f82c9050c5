#pragma once

#include "ClosedRoad.h"
#include "TrafficState.h"

#include <array>

namespace suite {

/// What a vehicle of the traffic is to do.
struct TrafficPlan
{
    int lane = 0;
    double start = 0.0; ///< Metres ahead of the ego when it starts.
    double speed = 0.0; ///< That it would like to drive at, m/s.
};

using TrafficPlans = std::array<TrafficPlan, trafficCount>;

/// The ego vehicle as the traffic sees it: in lane 0.
struct EgoOnRoad
{
    double place = 0.0; ///< m
    double speed = 0.0; ///< m/s
};

/// Vehicles that stay in their lanes on a closed road, in steps of 20 ms. Each drives at its own speed as long as the one in
/// front of it, the ego included, leaves it room, and keeps a distance that grows with its speed (the intelligent driver
/// model). The ego looks at nobody: who is in front of it drives on when it comes near. One thread at a time.
class TrafficModel
{
public:
    static constexpr double frameLength = 0.02; ///< Simulated seconds.

    /// \throw brvUtils::ConfigurationError when there are no such lanes or speeds, or two start in the same place.
    TrafficModel(const ClosedRoad& road, const TrafficPlans& plans);

    /// Places all around the ego, as at their start, each with its own speed. Frames count on.
    void begin(double egoPlace);

    /// One frame. Leaves the stamp of the state alone.
    void step(const EgoOnRoad& ego);

    const ClosedRoad& road() const { return road_; }
    const TrafficState& state() const { return state_; }

private:
    double wantedSpeed(int number, const EgoOnRoad& ego) const;
    double acceleration(int number, const EgoOnRoad& ego) const;
    void place(TrafficVehicle& vehicle, double place) const;

    ClosedRoad road_;
    TrafficPlans plans_;
    TrafficState state_;
};

} // namespace suite
