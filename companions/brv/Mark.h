#pragma once

#include <brv/Vector3.h>

namespace brv {

/// A pose: a position, and the angles in radians by which its frame is turned: first by roll about x, then by pitch about y,
/// then by heading about z, always about the axes of the frame that the pose is given in.
struct Mark
{
    /// At the origin, not turned.
    constexpr Mark() = default;

    /// All six, in the order in which they are stored.
    constexpr Mark(double xValue, double yValue, double zValue, double rollValue, double pitchValue, double headingValue)
        : x(xValue)
        , y(yValue)
        , z(zValue)
        , roll(rollValue)
        , pitch(pitchValue)
        , heading(headingValue)
    {
    }

    /// The position alone.
    constexpr Vector3 position() const { return {x, y, z}; }

    double x = 0.0; ///< Metres.
    double y = 0.0; ///< Metres.
    double z = 0.0; ///< Metres.
    double roll = 0.0; ///< Radians.
    double pitch = 0.0; ///< Radians.
    double heading = 0.0; ///< Radians.
};

/// Whether all six numbers are the same; the same pose may have other angles as well.
constexpr bool operator==(const Mark& a, const Mark& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.roll == b.roll && a.pitch == b.pitch && a.heading == b.heading;
}

/// Whether any number differs.
constexpr bool operator!=(const Mark& a, const Mark& b)
{
    return !(a == b);
}

} // namespace brv
