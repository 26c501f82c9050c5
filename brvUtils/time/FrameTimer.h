#pragma once

#include "Utilities/Clock.h"
#include "brv/Unit.h"
#include "brvUtils/export.h"

#include <cstddef>

class ExecutionClock;
class Synchronization;

namespace brvUtils {

/// The simulation time of a module that advances in frames, and how long the last frame was.
///
/// Time comes from an execution clock when there is one, and from the computer's monotonic clock otherwise; setting the
/// date of the computer changes nothing. Stopped at first. One thread at a time; a copy goes on from where the original
/// stands, with the same execution clock.
class BRVUTILS_API FrameTimer
{
public:
    /// FrameTimer(0.05, 0.0, nullptr).
    FrameTimer();

    /// \param nominalDelta in seconds: how long a frame is said to be before one was measured.
    /// \param initTime simulation time in seconds at which the first start begins.
    /// \param executionClock not owned; null for the computer's clock. No tick is counted here: where the simulation time is
    ///        not to begin at 0 with an execution clock, call setInitTime().
    FrameTimer(double nominalDelta, double initTime, ExecutionClock* executionClock);

    /// The same with the execution clock that `synchronization` holds; the computer's clock when either is null.
    FrameTimer(double nominalDelta, double initTime, Synchronization* synchronization);

    /// The same on the computer's clock.
    FrameTimer(double nominalDelta, double initTime, std::nullptr_t);

    /// Goes on from where the original stands.
    FrameTimer(const FrameTimer&) = default;
    /// The same.
    FrameTimer& operator=(const FrameTimer&) = default;
    virtual ~FrameTimer();

    /// Starts, or starts again: the current time is the initial one, and the frame is of nominal length.
    void init();

    /// The next frame. When stopped this is init(). Otherwise, on the computer's clock, the time is what has gone by since the
    /// start, on top of the initial time; the frame lasted since the one before, and the first one behind a start is said to
    /// be of nominal length.
    ///
    /// With an execution clock the time is all ticks counted so far, without the initial time. Nothing changes when no tick
    /// has passed. A count that goes back gives a negative frame, one tick longer than the difference (kept for callers).
    void run();

    /// Stops; the next start goes on from here, on the computer's clock because the initial time becomes that of now. The time
    /// until the next start counts for nothing. To be called while running: when stopped, the time since the last start is
    /// added once more (kept for callers).
    void pause();

    /// Whether the next run() is a start.
    bool stopped() const;

    /// The simulation time in seconds that the next start begins with. With an execution clock also presets the ticks counted
    /// to that time, cut to whole ones and to what 64 bits hold (not a number counts as 0). The current time stays.
    void setInitTime(double t);

    /// Simulation time of this frame, in seconds.
    double getCurrentTime() const;

    /// Length of the last frame, in seconds.
    double getDeltaTime() const;

    /// The ticks counted so far in whole units, cut towards zero. What does not fit is the greatest or least number that does.
    /// \throw std::invalid_argument when the unit is none of second, millisecond and microsecond.
    /// \throw ProgrammingError without an execution clock, or with one of 0 ticks per second.
    long long getCurrentTime(brv::t_unit unit) const;

    /// The ticks of the last frame, in the same way.
    long long getDeltaTime(brv::t_unit unit) const;

    /// Ticks counted so far; 0 without an execution clock.
    long long getInternalSimulationCount() const;
    /// Ticks of the last frame; 0 without an execution clock.
    long long getInternalDeltaCount() const;
    /// The execution clock's count when it was last read; 0 without one.
    long long getInternalRawCount() const;

private:
    void runOnComputerClock();
    void runOnExecutionClock();
    long long convertTime(brv::t_unit unit, long long ticks) const;

    ExecutionClock* executionClock_;
    long long simulationCount_ = 0;
    long long deltaCount_ = 0;
    long long rawCount_ = 0;
    Utilities::Clock clock_;
    double initTime_;
    double nominalDelta_;
    double currentTime_;
    double deltaTime_;
    bool isStopped_ = true;
    bool firstStep_ = true; ///< Until the first step behind a start, on the computer's clock.
};

} // namespace brvUtils
