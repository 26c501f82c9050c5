#pragma once

#include "ClosedRoad.h"
#include "SensorModel.h"
#include "TrafficModel.h"

/// \file
/// What the selected configuration says about road, traffic and sensor, see "Process.xfg". Each of these throws
/// brvUtils::ConfigurationError when something is missing or makes no sense.

namespace suite {

ClosedRoad configuredRoad();
TrafficPlans configuredTraffic();
SensorMounting configuredSensor();

} // namespace suite
