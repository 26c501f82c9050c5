#pragma once

#include <brv/Mark.h>
#include <brv/export.h>

namespace brv {

/// A motion of space without distortion: a rotation about the origin, then a translation. The transform of a pose takes what
/// is given in the frame of the pose to the frame that the pose itself is given in.
class BRV_API Transform
{
public:
    /// Leaves everything where it is.
    constexpr Transform() = default;

    /// R = Rz(heading) * Ry(pitch) * Rx(roll), then the position.
    explicit Transform(const Mark& mark);

    /// The pose of this transform, its pitch from -pi/2 to pi/2, the other angles from -pi to pi. Where the pitch is a right
    /// angle, heading and roll turn about the same axis: whichever of the many pairs comes out, it is of this transform.
    Mark toMark() const;

    /// Where the origin goes.
    Vector3 translation() const { return translation_; }

    /// Undoes this one.
    Transform inverse() const;

    /// Where a point goes.
    Vector3 operator*(const Vector3& point) const { return rotate(point) + translation_; }

    /// What a direction becomes.
    Vector3 rotate(const Vector3& v) const { return v.x * x_ + v.y * y_ + v.z * z_; }

    /// First `inner`, then this.
    Transform operator*(const Transform& inner) const;

private:
    // What the axes become: the columns of the matrix.
    Vector3 x_{1.0, 0.0, 0.0};
    Vector3 y_{0.0, 1.0, 0.0};
    Vector3 z_{0.0, 0.0, 1.0};
    Vector3 translation_;
};

} // namespace brv
