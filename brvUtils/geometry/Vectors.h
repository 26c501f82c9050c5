#pragma once

#include "brvUtils/export.h"

#include <brv/Vector2.h>
#include <brv/Vector3.h>

/// \file
/// Angles between vectors, and rotations. Angles are radians; in the plane x is to the right and y up, so that positive angles
/// turn to the left. Heading, pitch and roll travel as the x, y and z of one vector.

namespace brvUtils {

/// The angle from the x axis to `v`, -pi to pi.
BRVUTILS_API double heading(brv::Vector2 v);

/// The angle at `apex` from `p` to `q`, -pi to pi; 0 when one of them is the apex.
BRVUTILS_API double angleWith(brv::Vector2 apex, brv::Vector2 p, brv::Vector2 q);

/// The angle from `b` to `a`, -pi to pi: the other way round than in angleWith, kept for callers. 0 when one of them is zero.
BRVUTILS_API double angleWithVector(brv::Vector2 a, brv::Vector2 b);

/// Turns a vector to the left, about the z axis.
BRVUTILS_API void rotateZ(brv::Vector2& v, double angle);

/// The same in space; z stays.
BRVUTILS_API void rotateZ(brv::Vector3& v, double angle);

/// Takes `v` apart into a part along the bisector of `u` and `v` and one across it. Both are meant to have length 1; opposite
/// ones have no bisector, and nothing lies along it.
BRVUTILS_API void computeBisectriceAndNormal(brv::Vector2 u, brv::Vector2 v, brv::Vector2& bisectrice, brv::Vector2& normal);

/// Whether `p` lies on the side of `c`, or right on the bisector, of the angle at `b` between `a` and `c`.
BRVUTILS_API bool onCSide(brv::Vector2 a, brv::Vector2 b, brv::Vector2 c, brv::Vector2 p);

/// Turns a vector from the frame of a body to that of the world, R = Rz(heading) * Ry(pitch) * Rx(roll).
/// \param v in the frame of the body. \param angles heading, pitch, roll; not changed.
/// \return the vector in the frame of the world.
BRVUTILS_API brv::Vector3 applyAngles(brv::Vector3 v, brv::Vector3& angles);

/// The other way: undoes applyAngles.
BRVUTILS_API brv::Vector3 globalToLocal(brv::Vector3 v, brv::Vector3& angles);

} // namespace brvUtils
