#pragma once

#include "Driver.h"
#include "DrivingCycle.h"
#include "LongitudinalModel.h"
#include "VehicleState.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace suite {

/// A car whose driver follows a driving cycle, in steps of 5 ms. One thread at a time.
class VehicleSimulation
{
public:
    static constexpr double frameLength = 0.005; ///< Simulated seconds.

    /// \param engine of the car; has to stay as long as this.
    VehicleSimulation(DrivingCycle cycle, const EngineModel& engine)
        : cycle_(std::move(cycle))
        , car_(engine)
    {
    }

    const DrivingCycle& cycle() const { return cycle_; }
    const VehicleState& state() const { return state_; }

    /// The operation of the cycle that holds now.
    const Operation& operation() const { return cycle_.operationAt(state_.time); }

    /// The largest difference between speed and target so far, m/s.
    double largestDeviation() const { return largestDeviation_; }

    /// One frame. Leaves the stamp of the state alone.
    void step()
    {
        car_.step(driver_.force(state_.target, state_.speed, frameLength), operation().gear, frameLength);
        ++state_.frame;
        state_.time = static_cast<double>(state_.frame) * frameLength;
        state_.speed = car_.speed();
        state_.target = cycle_.speedAt(state_.time);
        state_.acceleration = car_.acceleration();
        state_.distance = car_.distance();
        state_.force = car_.force();
        state_.gear = operation().gear;
        largestDeviation_ = std::max(largestDeviation_, std::abs(state_.target - state_.speed));
    }

private:
    DrivingCycle cycle_;
    Driver driver_;
    LongitudinalModel car_;
    VehicleState state_;
    double largestDeviation_ = 0.0;
};

} // namespace suite
