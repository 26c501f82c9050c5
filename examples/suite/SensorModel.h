#pragma once

#include "SensorView.h"

#include <brvUtils/geometry/ReferenceFrames.h>

namespace suite {

/// Where a sensor sits and how far it sees. Metres and radians.
struct SensorMounting
{
    brv::Mark roof; ///< In the frame of the vehicle.
    brv::Mark sensor; ///< In the frame of the roof.
    double range = 0.0;
    double fieldOfView = 0.0; ///< All of it, half to each side.
};

/// A sensor on the roof of the ego vehicle: world, vehicle, roof and sensor are frames, each within the one before. One thread
/// at a time.
class SensorModel
{
public:
    static constexpr double targetHeight = 0.7; ///< Above the ground, of what it sees of a vehicle, m.

    /// \throw brvUtils::ConfigurationError when it would see nothing.
    explicit SensorModel(const SensorMounting& mounting);
    SensorModel(const SensorModel&) = delete;
    SensorModel& operator=(const SensorModel&) = delete;

    const SensorMounting& mounting() const { return mounting_; }

    /// What it has of the traffic with the ego at that pose. The stamp is left at 0; looks are counted.
    SensorView look(const brv::Mark& ego, const TrafficState& traffic);

private:
    SensorTarget lookAt(const TrafficVehicle& vehicle, const brv::Mark& sensor) const;

    SensorMounting mounting_;
    brvUtils::RelativePosition vehicle_;
    brvUtils::Base onVehicle_;
    brvUtils::RelativePosition roof_;
    brvUtils::Base onRoof_;
    brvUtils::RelativePosition sensor_;
    std::int64_t looks_ = 0;
};

} // namespace suite
