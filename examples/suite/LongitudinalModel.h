#pragma once

#include "EngineModel.h"

namespace suite {

/// What a small passenger car is made of, as far as driving straight on is concerned.
struct CarData
{
    double mass = 1150.0; ///< kg, driver included.
    double rollingResistance = 0.013; ///< Resisting force by weight.
    double dragArea = 0.65; ///< Drag coefficient times frontal area, m2.
    double brakeForce = 8000.0; ///< N.
};

/// A car on a level, straight road: a mass that is driven or braked and held up by tyres and air. One thread at a time.
class LongitudinalModel
{
public:
    /// \param engine that drives it; has to stay as long as this.
    explicit LongitudinalModel(const EngineModel& engine, const CarData& car = {})
        : engine_(engine)
        , car_(car)
    {
    }

    /// Moves the car on. It never rolls backwards.
    /// \param force asked for, N; positive drives, negative brakes. What the car cannot give is cut off.
    /// \param gear of the engine, 0 for none. \param seconds a step that is short against a second.
    void step(double force, int gear, double seconds);

    double speed() const { return speed_; } ///< m/s
    double acceleration() const { return acceleration_; } ///< During the last step, m/s2.
    double distance() const { return distance_; } ///< Since the start, m.
    double force() const { return force_; } ///< Of engine and brakes during the last step, N.

private:
    double resistance() const;

    const EngineModel& engine_;
    CarData car_;
    double speed_ = 0.0;
    double acceleration_ = 0.0;
    double distance_ = 0.0;
    double force_ = 0.0;
};

} // namespace suite
