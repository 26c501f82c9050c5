#include "brvUtils/geometry/Line2.h"
#include "brvUtils/geometry/Segments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace brvUtils {
namespace {

using brv::Vector2;

class Segments : public ::testing::Test
{
protected:
    Vector2 random(double size = 10.0)
    {
        std::uniform_real_distribution<double> some(-size, size);
        const double x = some(generator_);
        return {x, some(generator_)};
    }

    /// Few places, so that segments touch, lie on one line or are points.
    Vector2 onGrid()
    {
        std::uniform_int_distribution<int> some(-2, 2);
        const int x = some(generator_);
        return {static_cast<double>(x), static_cast<double>(some(generator_))};
    }

private:
    std::mt19937 generator_{1};
};

double of(const Line2& line, const Vector2& p)
{
    return line.a * p.x + line.b * p.y + line.c;
}

TEST_F(Segments, LinesHoldTheirPointsAndMeetOnBoth)
{
    for (int i = 0; i < 1000; ++i) {
        Vector2 p = random(), q = random(), r = random();
        Line2 through, pointing, middle;
        through.passingThrough(p, q);
        Vector2 direction = r - p;
        pointing.pointHeading(p, direction);
        middle.mediatrice(q, r);
        EXPECT_NEAR(of(through, p), 0.0, 1e-12);
        EXPECT_NEAR(of(through, q), 0.0, 1e-12);
        EXPECT_NEAR(of(pointing, r), 0.0, 1e-12);
        Vector2 meeting;
        ASSERT_TRUE(intersectionOf(meeting, through, pointing));
        EXPECT_LT(norm(meeting - p), 1e-8);
        ASSERT_TRUE(intersectionOf(meeting, through, middle));
        EXPECT_NEAR(norm(meeting - q), norm(meeting - r), 1e-8 * (1.0 + norm(meeting)));
    }
    Vector2 meeting(1.0, 2.0);
    EXPECT_FALSE(intersectionOf(meeting, {1.0, 2.0, 3.0}, {-2.0, -4.0, 5.0}));
    EXPECT_EQ(meeting, Vector2());
}

TEST_F(Segments, PointsLieAlongAndBesideALine)
{
    double abscissa = 0.0, gap = 0.0;
    abscissaAndGap({1.0, 1.0}, {1.0, 3.0}, {0.0, 4.0}, abscissa, gap);
    EXPECT_DOUBLE_EQ(abscissa, 3.0);
    EXPECT_DOUBLE_EQ(gap, 1.0);
    abscissaAndGap({1.0, 1.0}, {1.0, 1.0}, {3.0, 4.0}, abscissa, gap);
    EXPECT_EQ(Vector2(abscissa, gap), Vector2(2.0, 3.0)) << "along the x axis";
    for (const double size : {1e-200, 1e-150, 1.0, 1e6, 1e155}) { // the squares of some are no numbers
        for (int i = 0; i < 1000; ++i) {
            const Vector2 origin = random(size), towards = random(size), p = random(size);
            abscissaAndGap(origin, towards, p, abscissa, gap);
            const double angle = -std::atan2(towards.y - origin.y, towards.x - origin.x);
            const Vector2 w = p - origin;
            ASSERT_NEAR(abscissa / size, (w.x * std::cos(angle) - w.y * std::sin(angle)) / size, 1e-14);
            ASSERT_NEAR(gap / size, (w.x * std::sin(angle) + w.y * std::cos(angle)) / size, 1e-14);
        }
    }
}

/// The distance of a point and a segment.
double distance(const Vector2& p, const Vector2& a, const Vector2& b)
{
    const double square = dot(b - a, b - a);
    const double s = square > 0.0 ? std::clamp(dot(p - a, b - a) / square, 0.0, 1.0) : 0.0;
    return norm(a + s * (b - a) - p);
}

/// The distance of two segments that do not cross: that of an end.
double distanceOfEnds(const Vector2& p1, const Vector2& q1, const Vector2& p2, const Vector2& q2)
{
    return std::min({distance(p1, p2, q2), distance(q1, p2, q2), distance(p2, p1, q1), distance(q2, p1, q1)});
}

TEST_F(Segments, HaveADistance)
{
    Vector2 between;
    EXPECT_EQ(squareDistanceSegmentToSegment(between, {-1.0, 0.0}, {1.0, 0.0}, {0.0, -1.0}, {0.0, 1.0}), 0.0f);
    EXPECT_EQ(squareDistanceSegmentToSegment(between, {0.0, 0.0}, {4.0, 0.0}, {1.0, 1.0}, {3.0, 1.0}), 1.0f);
    EXPECT_EQ(between, Vector2(0.0, -1.0)) << "from the second to the first";
    EXPECT_EQ(squareDistanceSegmentToSegment(between, {1.0, 1.0}, {1.0, 1.0}, {4.0, 5.0}, {4.0, 5.0}), 25.0f) << "points";
    int crossing = 0;
    for (int i = 0; i < 20'000; ++i) {
        const bool grid = i % 2 == 0;
        const Vector2 p1 = grid ? onGrid() : random(), q1 = grid ? onGrid() : random();
        const Vector2 p2 = grid ? onGrid() : random(), q2 = grid ? onGrid() : random();
        const float square = squareDistanceSegmentToSegment(between, p1, q1, p2, q2);
        if (p2 == q2) { // not as the other way round, where it is the distance of the point and the segment
            ASSERT_EQ(between, p1 - p2);
            continue;
        }
        ASSERT_EQ(square, static_cast<float>(dot(between, between)));
        if (!grid && std::fabs(cross(normalise(q1 - p1), normalise(q2 - p2))) < 0.1) {
            continue; // nearly parallel: single precision loses too many digits to tell how many are left
        }
        const bool crosses = cross(q1 - p1, p2 - p1) * cross(q1 - p1, q2 - p1) < 0.0 && cross(q2 - p2, p1 - p2) * cross(q2 - p2, q1 - p2) < 0.0;
        crossing += crosses;
        ASSERT_NEAR(std::sqrt(square), crosses ? 0.0 : distanceOfEnds(p1, q1, p2, q2), 2e-3) << "single precision";
    }
    EXPECT_GT(crossing, 1000);
}

struct Meeting
{
    bool found;
    Vector2 result{-7.0, -7.0};
    double sA = -7.0;
    double sB = -7.0;
};

Meeting meet(const Vector2& a0, const Vector2& b0, const Vector2& a1, const Vector2& b1)
{
    Meeting meeting{};
    meeting.found = intersectionOfSegmentsParametricCoords(meeting.result, a0, b0, a1, b1, meeting.sA, meeting.sB);
    return meeting;
}

TEST_F(Segments, MeetWhereTheyCross)
{
    const Meeting middle = meet({0.0, 0.0}, {1.0, -1.0}, {2.0, 0.0}, {1.0, 1.0});
    EXPECT_TRUE(middle.found);
    EXPECT_EQ(middle.result, Vector2(1.0, 0.0));
    EXPECT_EQ(middle.sA, 0.5);
    EXPECT_EQ(middle.sB, 0.5);
    int found = 0;
    for (int i = 0; i < 20'000; ++i) {
        const Vector2 a0 = random(), b0 = random(), a1 = random(), b1 = random();
        const Meeting meeting = meet(a0, b0, a1, b1);
        found += meeting.found;
        const bool apart = cross(a1 - a0, b0 - a0) * cross(a1 - a0, b1 - a0) > 0.0 || cross(b1 - b0, a0 - b0) * cross(b1 - b0, a1 - b0) > 0.0;
        ASSERT_EQ(meeting.found, !apart);
        if (meeting.found) {
            ASSERT_LT(norm(a0 + meeting.sA * (a1 - a0) - meeting.result), 1e-10);
            ASSERT_LT(norm(b0 + meeting.sB * (b1 - b0) - meeting.result), 1e-10);
            ASSERT_TRUE(meeting.sA >= 0.0 && meeting.sA <= 1.0 && meeting.sB >= 0.0 && meeting.sB <= 1.0);
        } else {
            ASSERT_EQ(meeting.result, Vector2(-7.0, -7.0)) << "untouched";
        }
        const Meeting turned = meet(a1, b1, a0, b0); // no rule is asked in general position
        ASSERT_EQ(turned.found, meeting.found);
        ASSERT_EQ(meet(b0, a0, b1, a1).found, meeting.found);
    }
    EXPECT_GT(found, 1000);
}

/// The rules as they were agreed on, each step for itself.
bool meetByTheRules(const Vector2& a0, const Vector2& b0, const Vector2& a1, const Vector2& b1)
{
    const auto sides = [](const Vector2& p, const Vector2& from, const Vector2& to) {
        return (p.x - from.x) * (to.y - from.y) - (p.y - from.y) * (to.x - from.x);
    };
    const auto rejects = [](double s0, double s1) { return (s0 != 0.0 && s1 != 0.0 && s0 > 0.0 && s1 > 0.0) || (s0 <= 0.0 && s1 <= 0.0); };
    const auto overlaps = [](double a, double b, double c, double d) {
        return !(std::max(a, b) < std::min(c, d) || std::max(c, d) < std::min(a, b));
    };
    const double dB0 = sides(b0, a0, a1), dB1 = sides(b1, a0, a1);
    return overlaps(a0.x, a1.x, b0.x, b1.x) && overlaps(a0.y, a1.y, b0.y, b1.y) && !rejects(dB0, dB1)
        && !rejects(sides(a0, b0, b1), sides(a1, b0, b1)) && std::fabs(dB0 - dB1) >= 1e-6;
}

TEST_F(Segments, TouchByRulesThatAreNotSymmetric)
{
    EXPECT_TRUE(meet({0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {1.0, -1.0}).found) << "the other end is to the right";
    EXPECT_FALSE(meet({0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {1.0, 1.0}).found) << "to the left";
    EXPECT_FALSE(meet({0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {3.0, 0.0}).found) << "on one line";
    int found = 0, otherwiseTurned = 0;
    for (int i = 0; i < 20'000; ++i) {
        const Vector2 a0 = onGrid(), b0 = onGrid(), a1 = onGrid(), b1 = onGrid();
        const bool meets = meet(a0, b0, a1, b1).found;
        ASSERT_EQ(meets, meetByTheRules(a0, b0, a1, b1));
        found += meets;
        otherwiseTurned += meets != meet(a1, b0, a0, b1).found;
    }
    EXPECT_GT(found, 1000);
    EXPECT_GT(otherwiseTurned, 1000) << "which end of a segment is the first one matters";
}

} // namespace
} // namespace brvUtils
