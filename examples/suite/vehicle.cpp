/// A car that follows a driving cycle and shows its state in shared memory, 200 times in each simulated second.
#include "CycleFile.h"
#include "FramePacer.h"
#include "Module.h"
#include "VehicleShm.h"
#include "VehicleSimulation.h"

#include <brvUtils/startup/ModulePaths.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <string>
#include <thread>

namespace {

using namespace suite;

struct Options
{
    float seconds = 10.0f;
    float speed = 20.0f;
    std::string data;
};

const char* const flags = "seconds:float:10:How long to drive, seconds of wall time, 0 until stopped;"
                          "speed:float:20:How many times faster than real time, 0.1 to 1000;"
                          "data:file::Driving cycle, or the folder that holds ece15.txt, by default the folder data beside the program;";

constexpr double toKilometresPerHour = 3.6;

std::filesystem::path cyclePlace(const Options& options)
{
    return options.data.empty() ? std::filesystem::u8path(brvUtils::GetModulePath()) / "data" : std::filesystem::path(options.data);
}

VehicleRun describe(const DrivingCycle& cycle, const Options& options)
{
    VehicleRun run;
    run.speedFactor = options.speed;
    run.cycleDuration = cycle.duration();
    std::snprintf(run.cycleName, sizeof run.cycleName, "%s", cycle.name().c_str());
    return run;
}

/// Simulates frames as they fall due, and shows each of them.
class Drive
{
public:
    Drive(VehicleSimulation& simulation, VehicleShm& shm, bool verbose)
        : simulation_(simulation)
        , shm_(shm)
        , verbose_(verbose)
    {
    }

    /// Until that many frames are done or a stop is asked for. False when the shared memory could not be had any more.
    bool run(double framesPerSecond, std::int64_t frames)
    {
        using Clock = std::chrono::steady_clock;
        const FramePacer pacer(framesPerSecond);
        const Clock::time_point start = Clock::now();
        while (!StopRequest::received()) {
            const auto elapsed = Clock::now() - start;
            const std::int64_t due = std::min(pacer.framesDue(elapsed), frames);
            while (simulation_.state().frame < due) {
                if (!doFrame()) {
                    return false;
                }
            }
            if (due == frames) {
                break;
            }
            std::this_thread::sleep_until(start + pacer.nextLook(elapsed));
        }
        return true;
    }

    /// Frames that were simulated but not shown.
    int lost() const { return lost_; }

private:
    bool doFrame()
    {
        const Operation* before = &simulation_.operation();
        simulation_.step();
        if (verbose_ && &simulation_.operation() != before) {
            tellOperation();
        }
        VehicleState state = simulation_.state();
        state.stamp = clockNow();
        const bool shown = shm_.putState(state);
        // One failure is another module that died while it looked; several are a lock that nobody gives back.
        failures_ = shown ? 0 : failures_ + 1;
        lost_ += shown ? 0 : 1;
        return failures_ < 3;
    }

    void tellOperation() const
    {
        const Operation& operation = simulation_.operation();
        std::printf("  %7.1f s  %-12s  to %2.0f km/h, gear %d\n", simulation_.state().time, operation.kind.c_str(),
            operation.to * toKilometresPerHour, operation.gear);
        std::fflush(stdout);
    }

    VehicleSimulation& simulation_;
    VehicleShm& shm_;
    bool verbose_;
    int failures_ = 0; ///< In a row.
    int lost_ = 0;
};

int drive(const brvUtils::ArgParser& arguments, const Options& options)
{
    const char* me = arguments.getProcessName().c_str();
    VehicleSimulation simulation(loadCycle(cyclePlace(options)));
    const DrivingCycle& cycle = simulation.cycle();
    VehicleShm shm;

    VehicleState first = simulation.state();
    first.stamp = clockNow();
    if (!shm.start(describe(cycle, options), first)) {
        std::fprintf(stderr, "%s: the shared memory is held by somebody else\n", me);
        return 1;
    }
    std::printf("%s: %s (%.0f s, nominally %.0f m), %g x real time\n", me, cycle.name().c_str(), cycle.duration(),
        cycle.nominalDistance(), static_cast<double>(options.speed));
    std::fflush(stdout);

    const double rate = options.speed / VehicleSimulation::frameLength;
    const std::int64_t frames = options.seconds > 0 ? std::llround(options.seconds * rate) : std::numeric_limits<std::int64_t>::max();
    Drive run(simulation, shm, arguments.getVerbose());
    const bool good = run.run(rate, frames);
    shm.end();

    const VehicleState& state = simulation.state();
    std::printf("%s: %s: %lld frames, %.1f s simulated, %.1f m, at most %.2f km/h off the cycle, %d frames not shown\n", me,
        StopRequest::received() ? "stopped" : "ended", static_cast<long long>(state.frame), state.time, state.distance,
        simulation.largestDeviation() * toKilometresPerHour, run.lost());
    if (!good) {
        std::fprintf(stderr, "%s: the shared memory is held by somebody else\n", me);
    }
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    StopRequest::listen();
    try {
        Options options;
        brvUtils::ArgParser arguments(argc, argv, "vehicle", flags);
        arguments.addFloatHandler("seconds", options.seconds);
        arguments.addFloatHandler("speed", options.speed);
        arguments.addFileHandler("data", options.data);
        if (!readCommandLine(arguments)) {
            return 1;
        }
        if (!(options.seconds >= 0.0f && options.seconds < 1e6f) || !(options.speed >= 0.1f && options.speed <= 1000.0f)) {
            std::fprintf(stderr, "-seconds is 0 or more, -speed is 0.1 to 1000\n");
            return 1;
        }
        return drive(arguments, options);
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "vehicle: %s\n", fault.what());
        return 1;
    }
}
