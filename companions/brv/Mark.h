#pragma once

#include <brv/Vector3.h>

namespace brv {

/// A pose: a position, and the angles in radians by which its frame is turned: first by roll about x, then by pitch about y,
/// then by heading about z, always about the axes of the frame that the pose is given in.
struct Mark
{
    constexpr Mark() = default;
    constexpr Mark(double xValue, double yValue, double zValue, double rollValue, double pitchValue, double headingValue)
        : x(xValue)
        , y(yValue)
        , z(zValue)
        , roll(rollValue)
        , pitch(pitchValue)
        , heading(headingValue)
    {
    }

    constexpr Vector3 position() const { return {x, y, z}; }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double roll = 0.0;
    double pitch = 0.0;
    double heading = 0.0;
};

constexpr bool operator==(const Mark& a, const Mark& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.roll == b.roll && a.pitch == b.pitch && a.heading == b.heading;
}

constexpr bool operator!=(const Mark& a, const Mark& b)
{
    return !(a == b);
}

} // namespace brv
