#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace suite {

/// Tells which frames are due. Always counted from the start, so that nothing adds up: whoever wakes up late finds more
/// frames due and catches up.
class FramePacer
{
public:
    using Duration = std::chrono::nanoseconds;

    /// \param framesPerSecond of wall time.
    explicit FramePacer(double framesPerSecond)
        : rate_(framesPerSecond / 1e9)
    {
    }

    /// Frames that should be done, that long after the start.
    std::int64_t framesDue(Duration elapsed) const { return static_cast<std::int64_t>(static_cast<double>(elapsed.count()) * rate_); }

    /// When to look again, counted from the start: when the next frame is due, but not before a millisecond has passed.
    /// Sleeping costs more than a frame; frames that follow each other sooner are done together.
    Duration nextLook(Duration elapsed) const
    {
        const Duration next(static_cast<std::int64_t>(static_cast<double>(framesDue(elapsed) + 1) / rate_) + 1);
        return std::max(next, elapsed + std::chrono::milliseconds(1));
    }

private:
    double rate_; ///< Frames per nanosecond.
};

} // namespace suite
