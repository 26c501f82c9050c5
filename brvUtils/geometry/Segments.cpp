#include "brvUtils/geometry/Segments.h"

#include "brvUtils/geometry/internal/Constants.h"

#include <algorithm>
#include <cmath>

namespace brvUtils {

namespace {

constexpr bool overlap(double a0, double a1, double b0, double b1)
{
    return std::max(a0, a1) >= std::min(b0, b1) && std::max(b0, b1) >= std::min(a0, a1);
}

/// Whether these sides of a segment, by sign, rule out that it is crossed: one has to be positive and the other must not.
constexpr bool rejected(double side0, double side1)
{
    return (side0 > 0.0) == (side1 > 0.0);
}

/// A fraction whose bounds are 0 and 1.
struct Fraction
{
    float numerator;
    float denominator;

    float value() const { return std::fabs(numerator) < tolerance ? 0.0f : numerator / denominator; }
};

/// The place on a segment of squared length `a`, kept within it.
Fraction clamped(float numerator, float a, float denominator)
{
    if (numerator < 0.0f) {
        return {0.0f, denominator};
    }
    return numerator > a ? Fraction{denominator, denominator} : Fraction{numerator, a};
}

} // namespace

float squareDistanceSegmentToSegment(brv::Vector2& between, brv::Vector2 p1, brv::Vector2 q1, brv::Vector2 p2, brv::Vector2 q2)
{
    const brv::Vector2 d1 = q1 - p1;
    const brv::Vector2 d2 = q2 - p2;
    const brv::Vector2 r = p1 - p2;
    const auto a = static_cast<float>(dot(d1, d1));
    const auto b = static_cast<float>(dot(d1, d2));
    const auto e = static_cast<float>(dot(d2, d2));
    const auto c = static_cast<float>(dot(d1, r));
    const auto f = static_cast<float>(dot(d2, r));
    const float det = a * e - b * b;

    // Where the lines are closest, on the first one within the segment.
    Fraction s{0.0f, 1.0f};
    Fraction t{f, e};
    if (!(det < tolerance)) { // not parallel
        s = {b * f - c * e, det};
        t = {a * f - b * c, det};
        if (s.numerator < 0.0f) {
            s.numerator = 0.0f;
            t = {f, e};
        } else if (s.numerator > det) {
            s.numerator = det;
            t = {f + b, e};
        }
    }
    // On the second one, too; the first one follows.
    if (t.numerator < 0.0f) {
        t.numerator = 0.0f;
        s = clamped(-c, a, s.denominator);
    } else if (t.numerator > t.denominator) {
        t.numerator = t.denominator;
        s = clamped(b - c, a, s.denominator);
    }
    between = (p1 + static_cast<double>(s.value()) * d1) - (p2 + static_cast<double>(t.value()) * d2);
    return static_cast<float>(dot(between, between));
}

bool intersectionOfSegmentsParametricCoords(
    brv::Vector2& result, brv::Vector2 a0, brv::Vector2 b0, brv::Vector2 a1, brv::Vector2 b1, double& sA, double& sB)
{
    if (!overlap(a0.x, a1.x, b0.x, b1.x) || !overlap(a0.y, a1.y, b0.y, b1.y)) {
        return false;
    }
    const brv::Vector2 alongA = a1 - a0;
    const double dB0 = cross(b0 - a0, alongA);
    const double dB1 = cross(b1 - a0, alongA);
    if (rejected(dB0, dB1)) {
        return false;
    }
    const brv::Vector2 alongB = b1 - b0;
    const double dA0 = cross(a0 - b0, alongB);
    const double dA1 = cross(a1 - b0, alongB);
    if (rejected(dA0, dA1)) {
        return false;
    }
    const double den = dB0 - dB1;
    if (std::fabs(den) < tolerance) {
        return false;
    }
    sA = -dA0 / den;
    sB = dB0 / den;
    result = a0 + sA * alongA;
    return true;
}

} // namespace brvUtils
