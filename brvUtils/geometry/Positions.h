#pragma once

#include "brvUtils/export.h"

#include <brv/Vector3.h>

namespace brvUtils {

/// The point beside `a`, to the left of the direction to `b` as seen from above, at the height of `a`; `a` itself when the two
/// are closer than 1e-6. On a slope it is nearer than `offset`, which is divided by the distance in space: kept for callers.
/// \param offset metres; negative ones are to the right.
BRVUTILS_API brv::Vector3 offsetPosition(brv::Vector3 a, brv::Vector3 b, double offset);

/// The point `gap` metres to the left of a position and heading (radians), at the same height.
BRVUTILS_API brv::Vector3 offsetGap(brv::Vector3& position, float heading, double gap);

} // namespace brvUtils
