#pragma once

#include "brvUtils/export.h"
#include "brvUtils/geometry/Vectors.h"

#include <brv/Vector2.h>

#include <cmath>

namespace brvUtils {

/// Where a point lies along the oriented line from `origin` to `towards`, and how far to the left of it. When these two are the
/// same the line is the x axis through them.
inline void abscissaAndGap(brv::Vector2 origin, brv::Vector2 towards, brv::Vector2 p, double& abscissa, double& gap)
{
    const brv::Vector2 along = towards - origin;
    const brv::Vector2 w = p - origin;
    const double square = dot(along, along);
    if (square > 1e-280 && square < 1e280) { // as exact as any number: no angle is needed
        const double inverse = 1.0 / std::sqrt(square);
        abscissa = dot(along, w) * inverse;
        gap = cross(along, w) * inverse;
    } else {
        const double angle = heading(along);
        const brv::Vector2 direction(std::cos(angle), std::sin(angle));
        abscissa = dot(direction, w);
        gap = cross(direction, w);
    }
}

/// The square of the distance of the segments [p1, q1] and [p2, q2], in single precision.
///
/// Kept for callers: of a second segment that is a point, it is that of the point and p1; a first one may be a point. Segments
/// count as parallel when the square of the product of their lengths and the sine between is below 1e-6, as with very short
/// ones; if these cross, it is more than 0.
/// \param[out] between from the second segment's closest point to that of the first.
BRVUTILS_API float squareDistanceSegmentToSegment(
    brv::Vector2& between, brv::Vector2 p1, brv::Vector2 q1, brv::Vector2 p2, brv::Vector2 q2);

/// Where the segments [a0, a1] and [b0, b1] meet; mind the order of the arguments.
///
/// Segments that touch, or lie on one line, meet or not by rules that are not symmetric, kept for callers: with b0 and b1 on
/// sides of A told by signs, positive to the right, both positive or neither positive is none; the same for A's ends and B.
/// \param result, sA, sB the point, and where it lies on A and B (0 the first end, 1 the second). They stay as they are when
///        there is none.
BRVUTILS_API bool intersectionOfSegmentsParametricCoords(brv::Vector2& result, brv::Vector2 a0, brv::Vector2 b0, brv::Vector2 a1,
    brv::Vector2 b1, double& sA, double& sB);

} // namespace brvUtils
