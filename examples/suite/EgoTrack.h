#pragma once

#include "TrafficModel.h"
#include "VehicleState.h"

#include <algorithm>

namespace suite {

/// Where the ego is, from what the vehicle tells. While this is silent, as after its death, the ego brakes to a stop: nobody
/// can keep clear of one that stands from one moment to the next. One thread at a time.
class EgoTrack
{
public:
    /// \param speedFactor simulated seconds per second.
    explicit EgoTrack(double speedFactor)
        : speedFactor_(speedFactor)
    {
    }

    /// What the vehicle told last. \param now see clockNow. \return whether the ego comes from nowhere: for the first time, or
    /// again after its restart or half a second without news.
    bool look(const VehicleState& state, std::int64_t now)
    {
        const bool isNews = state.stamp != state_.stamp;
        const bool comes = isNews && (state_.stamp == 0 || lost_ || state.frame < state_.frame);
        state_ = state;
        since_ = comes ? state.stamp : since_;
        const double age = static_cast<double>(std::max<std::int64_t>(0, now - state.stamp)) * 1e-9;
        lost_ = age > lostAfter;
        const double braked = std::min(age * speedFactor_, state.speed / braking);
        const double before = ego_.place;
        ego_ = {state.distance + (state.speed - braking * braked / 2.0) * braked, state.speed - braking * braked};
        before_ = comes ? ego_.place : before;
        return comes;
    }

    /// At the moment of the last look.
    const EgoOnRoad& ego() const { return ego_; }

    /// On its way there: 0 is its place at the look before, 1 that at the last one. At many times real time the two are far
    /// apart, and one who only showed up at both would jump over others.
    EgoOnRoad onItsWay(double share) const { return {before_ + share * (ego_.place - before_), ego_.speed}; }

    /// When the ego came, see clockNow.
    std::int64_t since() const { return since_; }

private:
    static constexpr double braking = 4.0; // m/s2
    static constexpr double lostAfter = 0.5; // seconds

    double speedFactor_;
    VehicleState state_;
    EgoOnRoad ego_;
    double before_ = 0.0; ///< Its place at the look before, m.
    std::int64_t since_ = 0;
    bool lost_ = false;
};

} // namespace suite
