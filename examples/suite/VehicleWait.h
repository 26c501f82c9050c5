#pragma once

#include "Heartbeat.h"
#include "VehicleShm.h"

#include <string>

namespace suite {

/// Waits until the vehicle runs, and tells so when that takes some time. The module's signs of life go on meanwhile.
/// \param seconds at most. \param me name of the module.
/// \return false when none came, or the module is to end: see StopRequest.
bool waitForVehicle(VehicleShm& shm, Heartbeat& heartbeat, float seconds, const std::string& me);

} // namespace suite
