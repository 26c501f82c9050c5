#include "brvUtils/geometry/Line2.h"

#include "brvUtils/geometry/internal/Constants.h"

#include <cmath>

namespace brvUtils {

Line2::Line2(double aValue, double bValue, double cValue)
    : a(aValue)
    , b(bValue)
    , c(cValue)
{
}

void Line2::passingThrough(brv::Vector2 p1, brv::Vector2 p2)
{
    a = p2.y - p1.y;
    b = -(p2.x - p1.x);
    c = -(a * p1.x + b * p1.y);
}

void Line2::pointHeading(brv::Vector2& point, brv::Vector2& direction)
{
    a = direction.y;
    b = -direction.x;
    c = -(a * point.x + b * point.y);
}

void Line2::mediatrice(brv::Vector2& p1, brv::Vector2& p2)
{
    a = p2.x - p1.x;
    b = p2.y - p1.y;
    c = -(a * (p1.x + p2.x) + b * (p1.y + p2.y)) / 2.0;
}

bool intersectionOf(brv::Vector2& result, Line2 l1, Line2 l2)
{
    const double det = l1.b * l2.a - l2.b * l1.a;
    if (std::fabs(det) < tolerance) {
        result = {};
        return false;
    }
    result = {(l2.b * l1.c - l1.b * l2.c) / det, (l2.c * l1.a - l1.c * l2.a) / det};
    return true;
}

} // namespace brvUtils
