#include "ClosedRoad.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/geometry/Angles.h>
#include <brvUtils/geometry/Positions.h>
#include <brvUtils/geometry/Vectors.h>

#include <cmath>

namespace suite {

namespace {

constexpr double pi = 3.141592653589793;

} // namespace

ClosedRoad::ClosedRoad(double straight, double radius, double laneWidth)
    : straight_(straight)
    , radius_(radius)
    , laneWidth_(laneWidth)
{
    const auto sensible = [](double metres) { return metres > 0.0 && metres <= 100'000.0; };
    if (!sensible(straight) || !sensible(radius) || !sensible(laneWidth) || radius <= (mostLanes + 1) * laneWidth) {
        throw brvUtils::ConfigurationError("a road has straights, curves and lanes of some metres, and curves wider than its lanes");
    }
}

double ClosedRoad::length() const
{
    return 2.0 * (straight_ + pi * radius_);
}

double ClosedRoad::wrapped(double place) const
{
    const double rest = std::fmod(place, length());
    const double positive = rest < 0.0 ? rest + length() : rest;
    return positive < length() ? positive : 0.0; // where a tiny negative rest was lost in the sum
}

brv::Mark ClosedRoad::poseAt(double place, int lane) const
{
    // The second half is the first one, turned about the origin by half a turn.
    double along = wrapped(place);
    const double half = length() / 2.0;
    double turned = 0.0;
    if (along >= half) {
        along -= half;
        turned = pi;
    }
    brv::Vector2 middle(along - straight_ / 2.0, -radius_);
    double heading = 0.0;
    if (along > straight_) {
        heading = (along - straight_) / radius_;
        middle = {0.0, -radius_};
        brvUtils::rotateZ(middle, heading);
        middle = middle + brv::Vector2(straight_ / 2.0, 0.0);
    }
    brvUtils::rotateZ(middle, turned);
    const float direction = brvUtils::checkAngle(static_cast<float>(heading + turned));
    brv::Vector3 position(middle.x, middle.y, 0.0);
    position = brvUtils::offsetGap(position, direction, gap(lane));
    return {position.x, position.y, position.z, 0.0, 0.0, direction};
}

double ClosedRoad::stretch(double place, int lane) const
{
    const double along = std::fmod(wrapped(place), length() / 2.0);
    return along <= straight_ ? 1.0 : 1.0 - gap(lane) / radius_;
}

} // namespace suite
