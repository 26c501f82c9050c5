#include "Recording.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <vector>

namespace suite {

namespace {

const std::vector<std::string> names = {"row", "time s", "clock s", "frame", "vehicle time s", "distance m", "speed m/s", "target m/s",
    "acceleration m/s2", "force N", "gear", "age s"};

// Where a row has them.
constexpr std::size_t rowColumn = 0;
constexpr std::size_t timeColumn = 1;
constexpr std::size_t clockColumn = 2;

constexpr std::chrono::milliseconds interval{500}; // so that who is killed loses less than a second

double toSeconds(std::int64_t nanoseconds)
{
    return static_cast<double>(nanoseconds) * 1e-9;
}

} // namespace

Recording::Recording(const std::filesystem::path& file, double period)
    : writer_(file, names, interval)
    , period_(period)
    , row_(before())
{
}

std::int64_t Recording::before() const
{
    return writer_.lastRow().empty() ? -1 : std::llround(writer_.lastRow()[rowColumn]);
}

/// Beats and time run on from the last row of an earlier recorder.
void Recording::begin(double clock)
{
    firstClock_ = origin_ = clock;
    if (!writer_.lastRow().empty()) {
        const double passed = clock - writer_.lastRow()[clockColumn];
        const double since = passed > 0.0 ? passed : period_; // the computer was switched off, and its clock began anew
        firstRow_ = row_ + std::max<std::int64_t>(1, std::llround(since / period_));
        origin_ = clock - (writer_.lastRow()[timeColumn] + since);
    }
}

void Recording::add(const VehicleState& state, std::int64_t now)
{
    const double clock = toSeconds(now);
    if (rows_++ == 0) {
        begin(clock);
    }
    // A beat may be a little early or late.
    row_ = std::max<std::int64_t>(row_ + 1, firstRow_ + std::llround((clock - firstClock_) / period_));
    writer_.add({static_cast<double>(row_), clock - origin_, clock, static_cast<double>(state.frame), state.time, state.distance,
        state.speed, state.target, state.acceleration, state.force, static_cast<double>(state.gear), toSeconds(now - state.stamp)});
}

} // namespace suite
