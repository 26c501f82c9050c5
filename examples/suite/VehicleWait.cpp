#include "VehicleWait.h"

#include <cstdio>

namespace suite {

bool waitForVehicle(VehicleShm& shm, Heartbeat& heartbeat, float seconds, const std::string& me)
{
    const std::int64_t start = clockNow();
    if (shm.waitForStart(0.0)) {
        return true;
    }
    std::printf("%s: waiting at most %g s for the vehicle\n", me.c_str(), static_cast<double>(seconds));
    std::fflush(stdout);
    while (secondsSince(start) < static_cast<double>(seconds) && heartbeat.wait()) {
        if (shm.waitForStart(0.0)) {
            return true;
        }
    }
    return false;
}

} // namespace suite
