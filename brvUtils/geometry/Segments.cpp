#include "brvUtils/geometry/Segments.h"

#include "brvUtils/geometry/internal/Constants.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

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

/// As `condition ? a : b`, but never by a branch.
float choose(bool condition, float a, float b)
{
    std::uint32_t bitsOfA, bitsOfB;
    std::memcpy(&bitsOfA, &a, sizeof a);
    std::memcpy(&bitsOfB, &b, sizeof b);
    const std::uint32_t mask = std::uint32_t(0) - condition;
    const std::uint32_t bits = (bitsOfA & mask) | (bitsOfB & ~mask);
    std::memcpy(&a, &bits, sizeof a);
    return a;
}

/// A place between 0 and 1, kept from going beyond; never divides by 0, for modules that let the processor trap that.
float fraction(float numerator, float denominator)
{
    const float within = std::min(numerator, denominator);
    const bool none = within < tolerance;
    return choose(none, 0.0f, within) / choose(none, 1.0f, denominator);
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

    // Which case it is cannot be foretold, so that all are computed. Where the lines are closest, kept within the first
    // segment, which leaves the place on the second one:
    const bool parallel = det < tolerance;
    const float sFree = choose(parallel, 0.0f, b * f - c * e);
    const bool before = parallel | (sFree < 0.0f);
    const bool behind = !parallel & (sFree > det);
    const float tNumerator = choose(before | behind, choose(behind, f + b, f), a * f - b * c);
    const float tDenominator = choose(before | behind, e, det);
    // Kept within the second one, too; then the first one follows.
    const bool above = tNumerator > tDenominator;
    const bool follows = (tNumerator < 0.0f) | above;
    const float sNumerator = choose(follows, choose(above, b, 0.0f) - c, sFree);
    const float sDenominator = choose(follows, a, det);
    const bool atEnd = (sNumerator > sDenominator) & (follows | !parallel);
    const float s = choose(atEnd, 1.0f, fraction(sNumerator, sDenominator));
    const float t = fraction(tNumerator, tDenominator);
    between = (p1 + static_cast<double>(s) * d1) - (p2 + static_cast<double>(t) * d2);
    return static_cast<float>(dot(between, between));
}

bool intersectionOfSegmentsParametricCoords(
    brv::Vector2& result, brv::Vector2 a0, brv::Vector2 b0, brv::Vector2 a1, brv::Vector2 b1, double& sA, double& sB)
{
    // All sides at once: which segments cross cannot be foretold either, and those that do pass the rest.
    const brv::Vector2 alongA = a1 - a0;
    const brv::Vector2 alongB = b1 - b0;
    const double dB0 = cross(b0 - a0, alongA);
    const double dB1 = cross(b1 - a0, alongA);
    const double dA0 = cross(a0 - b0, alongB);
    const double dA1 = cross(a1 - b0, alongB);
    if (rejected(dB0, dB1) | rejected(dA0, dA1)) {
        return false;
    }
    const double den = dB0 - dB1;
    if (std::fabs(den) < tolerance || !overlap(a0.x, a1.x, b0.x, b1.x) || !overlap(a0.y, a1.y, b0.y, b1.y)) {
        return false;
    }
    sA = -dA0 / den;
    sB = dB0 / den;
    result = a0 + sA * alongA;
    return true;
}

} // namespace brvUtils
