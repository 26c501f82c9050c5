/// A car that follows a driving cycle and shows its state in shared memory, 200 times in each simulated second.
#include "Configuration.h"
#include "Crash.h"
#include "CycleFile.h"
#include "Engine.h"
#include "Heartbeat.h"
#include "Module.h"
#include "VehicleShm.h"
#include "VehicleSimulation.h"

#include <brvUtils/platform/CrashDump.h>
#include <brvUtils/startup/EnvConfig.h>
#include <brvUtils/time/FrameTimer.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <exception>
#include <limits>
#include <string>

namespace {

using namespace suite;

struct Options
{
    float seconds = 10.0f;
    float speed = 20.0f;
    std::string data;
    std::string engine;
    std::string explain;
    std::string crash;
    float crashAfter = 1.0f;
};

const char* const flags = "seconds:float:10:How long to drive, in seconds of wall time up to 100000, 0 until stopped;"
                          "speed:float:20:How many times faster than real time, 0.1 to 1000;"
                          "data:file::Driving cycle, or the folder that holds ece15.txt, by default what the configuration says;"
                          "engine:string::Engine, a plug-in in the folder engine beside the library, such as electric, by default what the configuration says;"
                          "explain:string::Keyword of the configuration, such as data/cycles: tells its folders and ends;"
                          "crash:string::Crashes on purpose: null, overflow, division, abort, exception or thread. Not when it is started again after it broke off;"
                          "crashAfter:float:1:Seconds of wall time until then, 0 to 100000;";

constexpr double toKilometresPerHour = 3.6;
constexpr double tolerance = 0.1; // seconds of wall time that a vehicle may be late at its end

std::filesystem::path cyclePlace(const Options& options)
{
    return options.data.empty() ? findDataFile("data/cycles", moduleSetting("vehicle", "cycle")) : std::filesystem::path(options.data);
}

VehicleRun describe(const DrivingCycle& cycle, const Options& options)
{
    VehicleRun run;
    run.speedFactor = options.speed;
    run.cycleDuration = cycle.duration();
    std::snprintf(run.cycleName, sizeof run.cycleName, "%s", cycle.name().c_str());
    return run;
}

/// Whole milliseconds that a frame takes, 1 at least: at a higher speed each beat does several frames.
double beatPeriod(double framesPerSecond)
{
    return std::max(1.0, std::floor(1000.0 / framesPerSecond)) / 1000.0;
}

/// At each beat simulates the frames that have fallen due, and shows each of them.
class Drive
{
public:
    /// \param teller name of the module, before a line for each operation of the cycle; null for none.
    /// \param crash is asked at each beat whether its moment has come.
    Drive(VehicleSimulation& simulation, VehicleShm& shm, const char* teller, const CrashOnPurpose& crash)
        : simulation_(simulation)
        , shm_(shm)
        , teller_(teller)
        , crash_(crash)
    {
    }

    /// Until that many frames are done, their time is over or a stop is asked for. False when the shared memory could not
    /// be had any more.
    bool run(Heartbeat& heartbeat, double framesPerSecond, std::int64_t frames)
    {
        brvUtils::FrameTimer timer(1.0 / framesPerSecond, 0.0, nullptr);
        timer.run();
        while (heartbeat.wait()) {
            timer.run();
            crash_.crashWhenDue(timer.getCurrentTime());
            // Counted from the start, so that nothing adds up: after a late beat more frames are due.
            const std::int64_t due = std::min(static_cast<std::int64_t>(timer.getCurrentTime() * framesPerSecond), frames);
            if (!catchUp(due)) {
                return false;
            }
            behind_ = due - simulation_.state().frame;
            if (due == frames) {
                break;
            }
        }
        return true;
    }

    /// Frames that were due at the end and not done.
    std::int64_t behind() const { return behind_; }

    /// Frames that were simulated but not shown.
    int lost() const { return lost_; }

private:
    using Clock = std::chrono::steady_clock;

    /// Does the frames that are due, but not for long: on a computer that is too slow for them there is no end to it.
    bool catchUp(std::int64_t due)
    {
        const Clock::time_point limit = Clock::now() + std::chrono::milliseconds(50);
        while (simulation_.state().frame < due && Clock::now() < limit && !StopRequest::received()) {
            if (!doFrame()) {
                return false;
            }
        }
        return true;
    }

    bool doFrame()
    {
        const Operation* before = &simulation_.operation();
        simulation_.step();
        if (teller_ != nullptr && &simulation_.operation() != before) {
            tellOperation();
        }
        VehicleState state = simulation_.state();
        state.stamp = clockNow();
        const bool shown = shm_.putState(state);
        // One failure may be bad luck on a busy computer; several are not.
        failures_ = shown ? 0 : failures_ + 1;
        lost_ += shown ? 0 : 1;
        return failures_ < 3;
    }

    void tellOperation() const
    {
        const Operation& operation = simulation_.operation();
        std::printf("%s: %7.1f s  %-12s  to %2.0f km/h, gear %d\n", teller_, simulation_.state().time, operation.kind.c_str(),
            operation.to * toKilometresPerHour, operation.gear);
        std::fflush(stdout);
    }

    VehicleSimulation& simulation_;
    VehicleShm& shm_;
    const char* teller_;
    const CrashOnPurpose& crash_;
    std::int64_t behind_ = 0;
    int failures_ = 0; ///< In a row.
    int lost_ = 0;
};

int drive(const char* me, const Options& options, bool verbose)
{
    const std::filesystem::path place = cyclePlace(options);
    const Engine engine(options.engine.empty() ? moduleSetting("vehicle", "engine") : utf8(options.engine));
    VehicleSimulation simulation(loadCycle(place), engine.model());
    const DrivingCycle& cycle = simulation.cycle();
    VehicleShm shm;

    VehicleState broken;
    const bool restarted = shm.wasBrokenOff(broken);
    VehicleState first = simulation.state();
    first.stamp = clockNow();
    if (!shm.start(describe(cycle, options), first)) {
        std::fprintf(stderr, "%s: the shared memory is held by somebody else\n", me);
        return 1;
    }
    std::printf("%s: configuration %s, cycle %s\n", me, brvUtils::EnvConfig::getCurrentConfiguration().c_str(), place.u8string().c_str());
    std::printf("%s: %s (%.0f s, nominally %.0f m), %g x real time\n", me, cycle.name().c_str(), cycle.duration(),
        cycle.nominalDistance(), static_cast<double>(options.speed));
    std::printf("%s: engine %s\n", me, engine.model().name());
    if (restarted) {
        std::printf("%s: restarted at 0 s: the vehicle before was broken off at %.1f s\n", me, broken.time);
    }
    std::fflush(stdout);

    const double rate = options.speed / VehicleSimulation::frameLength;
    const std::int64_t frames = options.seconds > 0 ? std::llround(options.seconds * rate) : std::numeric_limits<std::int64_t>::max();
    const CrashOnPurpose crash(restarted ? "" : options.crash, options.crashAfter);
    Drive run(simulation, shm, verbose ? me : nullptr, crash);
    Heartbeat heartbeat(me, beatPeriod(rate));
    const bool good = run.run(heartbeat, rate, frames);
    const char* const ending = StopRequest::received() ? "stopped" : "ended";
    shm.end();

    const VehicleState& state = simulation.state();
    std::printf("%s: %s: %lld frames, %.1f s simulated, %.1f m, at most %.2f km/h off the cycle, %d frames not shown", me,
        ending, static_cast<long long>(state.frame), state.time, state.distance,
        simulation.largestDeviation() * toKilometresPerHour, run.lost());
    const double behind = static_cast<double>(run.behind());
    if (behind >= tolerance * rate) {
        std::printf(", %.1f s behind since this computer is too slow", behind * VehicleSimulation::frameLength);
    }
    std::printf("\n");
    if (!good) {
        std::fprintf(stderr, "%s: the shared memory is held by somebody else\n", me);
    }
    return good ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    StopRequest::listen();
    std::string me = "vehicle";
    try {
        Options options;
        brvUtils::ArgParser arguments(argc, argv, me, flags);
        arguments.addFloatHandler("seconds", options.seconds);
        arguments.addFloatHandler("speed", options.speed);
        arguments.addFileHandler("data", options.data);
        arguments.addStringHandler("engine", options.engine);
        arguments.addStringHandler("explain", options.explain);
        arguments.addStringHandler("crash", options.crash);
        arguments.addFloatHandler("crashAfter", options.crashAfter);
        if (!readCommandLine(arguments, me) || !withinLimits(me, "seconds", options.seconds, 0.0f, 100000.0f)
            || !withinLimits(me, "speed", options.speed, 0.1f, 1000.0f)
            || !withinLimits(me, "crashAfter", options.crashAfter, 0.0f, 100000.0f)) {
            return 1;
        }
        if (!CrashOnPurpose::isKind(options.crash)) {
            complain(me, "-crash knows no \"" + options.crash + "\"; -h tells what it knows");
            return 1;
        }
        selectConfiguration(arguments);
        if (!options.explain.empty()) {
            tell(std::cout, me, brvUtils::EnvConfig::explain(options.explain));
            return 0;
        }
        return drive(me.c_str(), options, arguments.getVerbose());
    } catch (const std::exception& fault) {
        complain(me, fault.what());
        return 1;
    }
}
