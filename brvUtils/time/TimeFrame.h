#pragma once

#include "brvUtils/export.h"
#include "brvUtils/time/FrameTimer.h"

namespace brvUtils {

/// The frames of a simulation that runs on the computer's clock: they are counted, and their step is measured or fixed. One
/// thread at a time. Callers read the fields.
class BRVUTILS_API TimeFrame
{
public:
    /// \param measuredStep whether the step is how long the last frame really was.
    /// \param fixedStep in seconds: the step when none is measured.
    TimeFrame(bool measuredStep, double fixedStep);

    /// Starts anew, with time 0, no frames, and the fixed step whether or not it is measured (kept for callers).
    void init();

    /// Starts, or goes on after pause(), which is where the time stands. The frames are counted on. A measured step is the
    /// nominal 0.05 s here.
    void start();

    /// The next frame.
    void run();

    /// Stops the time, as FrameTimer::pause().
    void pause();

    bool measuredStep; ///< Whether `step` is how long the last frame really was.
    FrameTimer frameTimer; ///< Of 0.05 s, without an execution clock.
    double fixedStep; ///< Seconds.
    double time = 0.0; ///< Simulation time of the current frame, in seconds.
    double step = 0.0; ///< What the current frame is to advance by, in seconds.
    unsigned int frameCount = 0; ///< run() since init().

private:
    void read();
};

} // namespace brvUtils
