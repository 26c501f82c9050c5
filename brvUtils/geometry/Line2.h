#pragma once

#include "brvUtils/export.h"

#include <brv/Vector2.h>

namespace brvUtils {

/// The line a * x + b * y + c = 0 of the plane; the numbers of a line may all be scaled. Through two points that are the same,
/// or in a direction of zero, there is none: a and b are 0.
class BRVUTILS_API Line2
{
public:
    /// No line yet: all zero.
    Line2() = default;

    /// The line of these three numbers.
    Line2(double aValue, double bValue, double cValue);

    /// Become the line through two points.
    void passingThrough(brv::Vector2 p1, brv::Vector2 p2);

    /// Become the line through a point in a direction, of any length.
    void pointHeading(brv::Vector2& point, brv::Vector2& direction);

    /// Become the line of the points that are equally far from two points.
    void mediatrice(brv::Vector2& p1, brv::Vector2& p2);

    double a = 0.0; ///< The factor of x.
    double b = 0.0; ///< The factor of y.
    double c = 0.0; ///< What is left.
};

/// Where two lines meet. \param result (0, 0) when they do not. \return false for lines that are parallel, as far as the
/// numbers tell: |b1 * a2 - b2 * a1| is below 1e-6.
BRVUTILS_API bool intersectionOf(brv::Vector2& result, Line2 l1, Line2 l2);

} // namespace brvUtils
