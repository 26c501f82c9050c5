#pragma once

#include "ValuePart.h"
#include "VehicleState.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/ipc/CompositeShm.h>
#include <brvUtils/ipc/EventWin32.h>
#include <brvUtils/ipc/SemaphoreWin32.h>
#include <brvUtils/ipc/ShmFactory.h>

namespace suite {

/// What the vehicle shares with the other modules. Whoever comes first makes it, where the selected configuration says; the
/// vehicle alone writes. There is one vehicle per instance of the suite. One thread at a time per object.
class VehicleShm : public brvUtils::CompositeShm
{
public:
    /// \throw brvUtils::ConfigurationError when the shared memory cannot be had.
    VehicleShm()
        : CompositeShm(brvUtils::newShm, brvUtils::SemaphoreWin32::New, "Vehicle", sizeof(VehicleState) + sizeof(VehicleRun),
            layoutVersion, 0)
        , started_("VehicleStarted", true, false)
        , ended_("VehicleEnded", true, false)
    {
        if (!addPart(state_) || !addPart(run_) || started_.getHandle() == nullptr || ended_.getHandle() == nullptr) {
            throw brvUtils::ConfigurationError("what the vehicle shares cannot be made");
        }
    }

    /// Vehicle, before its start: whether one before it was killed in the middle of its drive. \param last where that was.
    bool wasBrokenOff(VehicleState& last) { return started_.ask(0.0) && (getState(last) || getState(last)); }

    /// Vehicle: announces that it runs. False when that was not possible in time. Tries twice: the first time fails when
    /// the last to hold a part died while it did.
    bool start(const VehicleRun& run, const VehicleState& first)
    {
        run_.value = run;
        return (put(run_, patience) || put(run_, patience)) && (putState(first) || putState(first)) && ended_.reset() && started_.set();
    }

    /// Vehicle: announces that it ends.
    void end()
    {
        started_.reset();
        ended_.set();
    }

    /// Vehicle: shows its state. False when that was not possible in time, or the last to hold the part died while it did.
    bool putState(const VehicleState& state)
    {
        state_.value = state;
        return put(state_, patience);
    }

    /// Others: wait for the vehicle's start or end, at most so many seconds.
    bool waitForStart(double seconds) { return started_.ask(seconds); }
    bool waitForEnd(double seconds) { return ended_.ask(seconds); }

    /// Others: look at the vehicle. False as with putState; what is returned is then what was read before.
    bool getState(VehicleState& state)
    {
        const bool done = get(state_, patience);
        state = state_.value;
        return done;
    }
    /// The same, once; tries twice as start does.
    bool getRun(VehicleRun& run)
    {
        const bool done = get(run_, patience) || get(run_, patience);
        run = run_.value;
        return done;
    }

private:
    static constexpr short layoutVersion = 1;
    static constexpr double patience = 1.0; // seconds; a part is held for less than a microsecond

    ValuePart<VehicleState, 1> state_;
    ValuePart<VehicleRun, 2> run_;
    brvUtils::EventWin32 started_; ///< Signalled while the vehicle runs.
    brvUtils::EventWin32 ended_; ///< Signalled from its end to its next start.
};

} // namespace suite
