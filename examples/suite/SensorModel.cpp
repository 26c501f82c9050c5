#include "SensorModel.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/geometry/CoordinateConventions.h>
#include <brvUtils/geometry/Vectors.h>

#include <cmath>

namespace suite {

using brvUtils::RelativePosition;

SensorModel::SensorModel(const SensorMounting& mounting)
    : mounting_(mounting)
    , vehicle_(RelativePosition::getGlobalBase(), {})
    , onVehicle_(&vehicle_)
    , roof_(&onVehicle_, mounting.roof)
    , onRoof_(&roof_)
    , sensor_(&onRoof_, mounting.sensor)
{
    constexpr double wholeTurn = 6.2832;
    if (!(mounting.range > 0.0) || !(mounting.fieldOfView > 0.0 && mounting.fieldOfView <= wholeTurn)) {
        throw brvUtils::ConfigurationError("a sensor has a range above 0 m, and a field of view above 0 up to 360 degrees");
    }
}

SensorView SensorModel::look(const brv::Mark& ego, const TrafficState& traffic)
{
    vehicle_.setPlace(ego);
    const brv::Mark sensor = sensor_.getAbsolutePlace();
    SensorView view;
    view.frame = ++looks_;
    brvUtils::copyXYZHPRFromMark(view.ego, ego);
    brvUtils::copyXYZHPRFromMark(view.sensor, sensor);
    view.traffic = traffic;
    for (int number = 0; number < trafficCount; ++number) {
        view.targets[number] = lookAt(traffic.vehicles[number], sensor);
    }
    return view;
}

SensorTarget SensorModel::lookAt(const TrafficVehicle& vehicle, const brv::Mark& sensor) const
{
    brv::Mark pose;
    brvUtils::copyMarkFromXYZHPR(pose, vehicle.pose);
    RelativePosition place(RelativePosition::getGlobalBase(), pose);
    const brv::Vector3 middle = brvUtils::Base(&place).resolve({0.0, 0.0, targetHeight});

    brv::Vector3 angles(sensor.heading, sensor.pitch, sensor.roll);
    const brv::Vector3 seen = brvUtils::globalToLocal(middle - sensor.position(), angles);
    SensorTarget target;
    target.position[0] = seen.x;
    target.position[1] = seen.y;
    target.position[2] = seen.z;
    target.distance = brv::norm(seen);
    target.bearing = brvUtils::heading({seen.x, seen.y});
    target.inView = target.distance <= mounting_.range && std::abs(target.bearing) <= mounting_.fieldOfView / 2.0 ? 1 : 0;
    return target;
}

} // namespace suite
