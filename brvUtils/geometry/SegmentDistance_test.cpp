#include "brvUtils/geometry/Segments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace brvUtils {
namespace {

using brv::Vector2;

float dotOf(const Vector2& a, const Vector2& b)
{
    return static_cast<float>(dot(a, b));
}

/// The rules as they were agreed on, each step for itself.
float squareDistanceByTheRules(Vector2& between, const Vector2& p1, const Vector2& q1, const Vector2& p2, const Vector2& q2)
{
    const Vector2 d1 = q1 - p1, d2 = q2 - p2, r = p1 - p2;
    const float a = dotOf(d1, d1), b = dotOf(d1, d2), e = dotOf(d2, d2);
    const float c = dotOf(d1, r), f = dotOf(d2, r);
    const float det = a * e - b * b;
    float sN = 0.0f, sD = 1.0f, tN = f, tD = e; // parallel
    if (!(det < 1e-6)) {
        sN = b * f - c * e;
        tN = a * f - b * c;
        sD = tD = det;
        if (sN < 0.0f) {
            sN = 0.0f, tN = f, tD = e;
        } else if (sN > det) {
            sN = det, tN = f + b, tD = e;
        }
    }
    const auto follow = [&](float numerator) {
        if (numerator < 0.0f) {
            sN = 0.0f;
        } else if (numerator > a) {
            sN = sD;
        } else {
            sN = numerator, sD = a;
        }
    };
    if (tN < 0.0f) {
        tN = 0.0f;
        follow(-c);
    }
    if (tN > tD) {
        tN = tD;
        follow(b - c);
    }
    const float s = std::fabs(sN) < 1e-6 ? 0.0f : sN / sD;
    const float t = std::fabs(tN) < 1e-6 ? 0.0f : tN / tD;
    between = (p1 + static_cast<double>(s) * d1) - (p2 + static_cast<double>(t) * d2);
    return dotOf(between, between);
}

// From segments of less than a millimetre, which count as parallel or as points, to those of metres. The numbers are few and short, so
// that products are exact, and many segments touch, lie on one line or are points.
TEST(SegmentDistance, FollowsTheRulesToTheLastBit)
{
    std::mt19937 generator(1);
    std::uniform_int_distribution<int> place(-4, 4);
    int apart = 0;
    for (int exponent = -14; exponent <= 4; ++exponent) {
        const auto coordinate = [&] { return std::ldexp(place(generator), exponent); };
        const auto point = [&] {
            const double x = coordinate();
            return Vector2(x, coordinate());
        };
        for (int i = 0; i < 5000; ++i) {
            const Vector2 p1 = point(), q1 = point(), p2 = point(), q2 = point();
            Vector2 between, expected;
            const float square = squareDistanceSegmentToSegment(between, p1, q1, p2, q2);
            ASSERT_EQ(square, squareDistanceByTheRules(expected, p1, q1, p2, q2)) << "exponent " << exponent << ", number " << i;
            ASSERT_EQ(between, expected);
            apart += square > 0.0f;
        }
    }
    EXPECT_GT(apart, 1000);
}

} // namespace
} // namespace brvUtils
