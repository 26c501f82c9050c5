#pragma once

#include <brv/Mark.h>

namespace suite {

/// A level road that closes: two straights of the same length, joined by half circles that turn to the left. It begins where
/// the first straight does and is measured in metres along its middle line, that of lane 0; lane 1 is the one to the left of
/// it, lane -1 the one to the right. The middle of the whole is the origin, x points along the first straight. Any number of
/// threads may ask it.
class ClosedRoad
{
public:
    static constexpr int mostLanes = 3; ///< To each side.

    /// Metres. \throw brvUtils::ConfigurationError for what makes no road with room for its lanes.
    ClosedRoad(double straight, double radius, double laneWidth);

    double straight() const { return straight_; }
    double radius() const { return radius_; }
    double laneWidth() const { return laneWidth_; }

    /// Once round, m.
    double length() const;

    /// The same place within the first round: from 0 to, but not, the length.
    double wrapped(double place) const;

    /// How far it is from one place ahead to another, at most once round.
    double ahead(double from, double to) const { return wrapped(to - from); }

    /// The pose of who drives in that lane.
    brv::Mark poseAt(double place, int lane) const;

    /// How many metres one drives in that lane for each metre of the road.
    double stretch(double place, int lane) const;

private:
    double gap(int lane) const { return laneWidth_ * lane; }

    double straight_;
    double radius_;
    double laneWidth_;
};

} // namespace suite
