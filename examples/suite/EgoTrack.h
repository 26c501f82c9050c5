#pragma once

#include "TrafficModel.h"
#include "VehicleState.h"

#include <algorithm>

namespace suite {

/// Where the ego is, between what it tells and while it is silent. One thread at a time.
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
        const double age = static_cast<double>(std::max<std::int64_t>(0, now - state.stamp)) * 1e-9;
        lost_ = age > lostAfter;
        ego_ = {state.distance + state.speed * speedFactor_ * std::min(age, trusted), age > trusted ? 0.0 : state.speed};
        return comes;
    }

    /// At the moment of the last look. One that has told nothing for a tenth of a second stands where it was then.
    const EgoOnRoad& ego() const { return ego_; }

private:
    static constexpr double trusted = 0.1; // seconds
    static constexpr double lostAfter = 0.5; // seconds

    double speedFactor_;
    VehicleState state_;
    EgoOnRoad ego_;
    bool lost_ = false;
};

} // namespace suite
