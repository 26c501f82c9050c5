#pragma once

#include "Heartbeat.h"
#include "VehicleShm.h"

#include <functional>
#include <memory>
#include <string>

namespace suite {

/// Why a module that works as long as the vehicle drives has ended.
enum class Ending { vehicleEnded, vehicleSilent, stopped };

/// Such as "the vehicle has ended".
const char* textOf(Ending ending);

/// At each beat hands what the vehicle tells to `work`, until the vehicle has ended, was silent for too long or the module is
/// to end. The last call comes with the vehicle's last state. What it never told is not handed on.
/// \param silence in seconds.
Ending followVehicle(VehicleShm& shm, Heartbeat& heartbeat, double silence, const std::function<void(const VehicleState&)>& work);

/// What a module does that works as long as the vehicle drives.
class VehicleFollower
{
public:
    virtual ~VehicleFollower() = default;

    /// What it says when the vehicle has come. \param run what this one tells.
    virtual std::string begin(const VehicleRun& run) = 0;

    /// At each beat, see followVehicle.
    virtual void work(const VehicleState& vehicle) = 0;

    /// What it has done, at its end.
    virtual std::string done() const = 0;
};

/// The main() of such a module: flags, configuration, waiting for the vehicle, beats and last words.
/// \param name of the module, unless the command line has another one. \param period of its beat, seconds.
/// \param make makes what it does, when the configuration is selected. It may throw.
/// \return the exit code.
int followerMain(int argc, char** argv, std::string name, double period, const std::function<std::unique_ptr<VehicleFollower>()>& make);

} // namespace suite
