#include "LongitudinalModel.h"

#include <algorithm>

namespace suite {

namespace {

constexpr double gravity = 9.81; // m/s2
constexpr double airDensity = 1.2; // kg/m3

} // namespace

void LongitudinalModel::step(double force, int gear, double seconds)
{
    const double strongest = std::max(0.0, engine_.tractionForce(speed_, gear)); // an engine that gives no number gives nothing
    force_ = std::clamp(force, -car_.brakeForce, strongest);

    // Brakes and tyres only ever hold the car up: what would make it roll backwards leaves it standing.
    const double before = speed_;
    speed_ = std::max(0.0, before + (force_ - resistance()) / car_.mass * seconds);
    acceleration_ = (speed_ - before) / seconds;
    distance_ += (before + speed_) / 2.0 * seconds;
}

double LongitudinalModel::resistance() const
{
    return car_.rollingResistance * car_.mass * gravity + airDensity / 2.0 * car_.dragArea * speed_ * speed_;
}

} // namespace suite
