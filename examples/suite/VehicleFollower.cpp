#include "VehicleFollower.h"

#include "Configuration.h"
#include "Module.h"
#include "VehicleWait.h"

#include <exception>
#include <iostream>

namespace suite {

namespace {

struct Options
{
    float wait = 10.0f;
    float silence = 10.0f;
};

const char* const flags = "wait:float:10:Seconds to wait for the vehicle, 0 to 100000;"
                          "silence:float:10:Seconds without news after which the vehicle counts as lost, 0.1 to 100000;";

int run(const std::string& me, VehicleFollower& follower, double period, const Options& options)
{
    VehicleShm shm;
    Heartbeat heartbeat(me, period);
    if (!waitForVehicle(shm, heartbeat, options.wait, me)) {
        tell(std::cout, me, StopRequest::received() ? "stopped" : "no vehicle came");
        return StopRequest::received() ? 0 : 1;
    }
    VehicleRun vehicle;
    if (!shm.getRun(vehicle)) {
        complain(me, "the shared memory is held by somebody else");
        return 1;
    }
    tell(std::cout, me, follower.begin(vehicle));
    const Ending ending = followVehicle(
        shm, heartbeat, static_cast<double>(options.silence), [&](const VehicleState& state) { follower.work(state); });
    tell(std::cout, me, std::string(textOf(ending)) + ", " + follower.done());
    return ending == Ending::vehicleSilent ? 1 : 0;
}

} // namespace

const char* textOf(Ending ending)
{
    switch (ending) {
    case Ending::vehicleEnded: return "the vehicle has ended";
    case Ending::vehicleSilent: return "the vehicle has been silent for too long";
    case Ending::stopped: return "stopped";
    }
    return "";
}

Ending followVehicle(VehicleShm& shm, Heartbeat& heartbeat, double silence, const std::function<void(const VehicleState&)>& work)
{
    const std::int64_t start = clockNow();
    VehicleState state;
    while (heartbeat.wait()) {
        const bool ended = shm.waitForEnd(0.0); // before the look at the state, which is then the last one
        shm.getState(state);
        if (state.stamp != 0) {
            work(state);
        }
        if (ended) {
            return Ending::vehicleEnded;
        }
        if (secondsSince(state.stamp != 0 ? state.stamp : start) > silence) {
            return Ending::vehicleSilent;
        }
    }
    return shm.waitForEnd(0.0) ? Ending::vehicleEnded : Ending::stopped;
}

int followerMain(int argc, char** argv, std::string name, double period, const std::function<std::unique_ptr<VehicleFollower>()>& make)
{
    StopRequest::listen();
    try {
        Options options;
        brvUtils::ArgParser arguments(argc, argv, name, flags);
        arguments.addFloatHandler("wait", options.wait);
        arguments.addFloatHandler("silence", options.silence);
        if (!readCommandLine(arguments, name) || !withinLimits(name, "wait", options.wait, 0.0f, 100000.0f)
            || !withinLimits(name, "silence", options.silence, 0.1f, 100000.0f)) {
            return 1;
        }
        selectConfiguration(arguments);
        return run(name, *make(), period, options);
    } catch (const std::exception& fault) {
        complain(name, fault.what());
        return 1;
    }
}

} // namespace suite
