/// Looks at the vehicle from another process and prints a line each second.
#include "Configuration.h"
#include "Heartbeat.h"
#include "Module.h"
#include "VehicleShm.h"
#include "VehicleWait.h"

#include <brvUtils/platform/CrashDump.h>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>

namespace {

using namespace suite;

struct Options
{
    float wait = 10.0f;
    float silence = 3.0f;
};

const char* const flags = "wait:float:10:Seconds to wait for the vehicle, 0 to 100000;"
                          "silence:float:3:Seconds without news after which the vehicle counts as lost, 0.1 to 100000;";

constexpr double toKilometresPerHour = 3.6;
constexpr double toMilliseconds = 1e-6; // from the clock's nanoseconds

void printState(const char* me, double wallSeconds, const VehicleState& state)
{
    const auto age = clockNow() - state.stamp;
    std::printf("%s: %8.1f %8.1f %7.1f %11.1f %11.1f %9lld %8.2f\n", me, wallSeconds, state.time, state.speed * toKilometresPerHour,
        state.target * toKilometresPerHour, state.distance, static_cast<long long>(state.frame), static_cast<double>(age) * toMilliseconds);
    std::fflush(stdout);
}

constexpr double beatPeriod = 0.1; // seconds

enum class Ending { vehicleEnded, vehicleSilent, stopped };

Ending watch(VehicleShm& shm, Heartbeat& heartbeat, const Options& options, const char* me)
{
    const std::int64_t start = clockNow();
    VehicleState state;
    for (int nextLine = 1; heartbeat.wait();) {
        if (shm.waitForEnd(0.0)) {
            return Ending::vehicleEnded;
        }
        // Without luck this time the line shows what was seen before, if anything was.
        const std::int64_t frame = state.frame;
        shm.getState(state);
        if (state.frame < frame) {
            std::printf("%s: the vehicle was restarted, its time begins again\n", me);
            std::fflush(stdout);
        }
        if (secondsSince(state.stamp != 0 ? state.stamp : start) > options.silence) {
            return Ending::vehicleSilent;
        }
        const double wallSeconds = secondsSince(start);
        if (wallSeconds >= nextLine) {
            if (state.stamp != 0) {
                printState(me, wallSeconds, state);
            }
            nextLine = static_cast<int>(wallSeconds) + 1;
        }
    }
    return shm.waitForEnd(0.0) ? Ending::vehicleEnded : Ending::stopped;
}

int display(const char* me, const Options& options)
{
    VehicleShm shm;
    Heartbeat heartbeat(me, beatPeriod);
    if (!waitForVehicle(shm, heartbeat, options.wait, me)) {
        std::printf("%s: %s\n", me, StopRequest::received() ? "stopped" : "no vehicle came");
        return StopRequest::received() ? 0 : 1;
    }
    VehicleRun run;
    if (!shm.getRun(run)) {
        std::fprintf(stderr, "%s: the shared memory is held by somebody else\n", me);
        return 1;
    }
    std::printf("%s: the vehicle drives %s (%.0f s) at %g x real time\n", me, run.cycleName, run.cycleDuration, run.speedFactor);
    std::printf("%s: %8s %8s %7s %11s %11s %9s %8s\n", me, "wall s", "sim s", "km/h", "target km/h", "distance m", "frame", "age ms");
    std::fflush(stdout);

    const Ending ending = watch(shm, heartbeat, options, me);
    switch (ending) {
    case Ending::vehicleEnded: {
        VehicleState last;
        if (shm.getState(last)) {
            std::printf("%s: the vehicle has ended after %.1f s and %.1f m\n", me, last.time, last.distance);
        } else {
            std::printf("%s: the vehicle has ended\n", me);
        }
        break;
    }
    case Ending::vehicleSilent:
        std::printf("%s: the vehicle has been silent for more than %g s\n", me, static_cast<double>(options.silence));
        break;
    case Ending::stopped: std::printf("%s: stopped\n", me); break;
    }
    return ending == Ending::vehicleSilent ? 1 : 0;
}

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    StopRequest::listen();
    std::string me = "display";
    try {
        Options options;
        brvUtils::ArgParser arguments(argc, argv, me, flags);
        arguments.addFloatHandler("wait", options.wait);
        arguments.addFloatHandler("silence", options.silence);
        if (!readCommandLine(arguments, me) || !withinLimits(me, "wait", options.wait, 0.0f, 100000.0f)
            || !withinLimits(me, "silence", options.silence, 0.1f, 100000.0f)) {
            return 1;
        }
        selectConfiguration(arguments);
        return display(me.c_str(), options);
    } catch (const std::exception& fault) {
        complain(me, fault.what());
        return 1;
    }
}
