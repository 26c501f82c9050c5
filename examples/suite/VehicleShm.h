#pragma once

#include "ModuleShm.h"
#include "VehicleState.h"

#include <brvUtils/ipc/EventWin32.h>

namespace suite {

/// What the vehicle shares with the other modules. Whoever comes first makes it; the vehicle alone writes. There is one
/// vehicle per instance of the suite. One thread at a time per object.
class VehicleShm : public ModuleShm
{
public:
    /// \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    VehicleShm()
        : ModuleShm("Vehicle", sizeof(VehicleState) + sizeof(VehicleRun), layoutVersion)
        , started_("VehicleStarted", true, false)
        , ended_("VehicleEnded", true, false)
    {
        if (!addParts(state_, run_) || started_.getHandle() == nullptr || ended_.getHandle() == nullptr) {
            throw brvUtils::ConfigurationError("what the vehicle shares cannot be made");
        }
    }

    /// Vehicle, before its start: whether one before it was killed in the middle of its drive. \param last where that was.
    bool wasBrokenOff(VehicleState& last) { return started_.ask(0.0) && getState(last); }

    /// Vehicle: announces that it runs. False when that was not possible.
    bool start(const VehicleRun& run, const VehicleState& first)
    {
        run_.value = run;
        return write(run_) && putState(first) && ended_.reset() && started_.set();
    }

    /// Vehicle: announces that it ends.
    void end()
    {
        started_.reset();
        ended_.set();
    }

    /// Vehicle: shows its state. False when that was not possible.
    bool putState(const VehicleState& state)
    {
        state_.value = state;
        return write(state_);
    }

    /// Others: wait for the vehicle's start or end, at most so many seconds.
    bool waitForStart(double seconds) { return started_.ask(seconds); }
    bool waitForEnd(double seconds) { return ended_.ask(seconds); }

    /// Others: look at the vehicle. False when that was not possible; what is returned is then what was read before.
    bool getState(VehicleState& state)
    {
        const bool done = read(state_);
        state = state_.value;
        return done;
    }
    bool getRun(VehicleRun& run)
    {
        const bool done = read(run_);
        run = run_.value;
        return done;
    }

private:
    static constexpr short layoutVersion = 1;

    ValuePart<VehicleState, 1> state_;
    ValuePart<VehicleRun, 2> run_;
    brvUtils::EventWin32 started_; ///< Signalled while the vehicle runs.
    brvUtils::EventWin32 ended_; ///< Signalled from its end to its next start.
};

} // namespace suite
