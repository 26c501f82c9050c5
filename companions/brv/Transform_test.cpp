#include "brv/Transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace brv {
namespace {

constexpr double pi = 3.141592653589793;

class Transforms : public ::testing::Test
{
protected:
    double random(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator_); }

    Mark randomPose()
    {
        const Vector3 p(random(-1e3, 1e3), random(-1e3, 1e3), random(-1e3, 1e3));
        const double roll = random(-10.0, 10.0), pitch = random(-10.0, 10.0);
        return {p.x, p.y, p.z, roll, pitch, random(-10.0, 10.0)};
    }

private:
    std::mt19937 generator_{1};
};

/// How far the frames' origins and the ends of their axes are apart.
double apart(const Transform& a, const Transform& b)
{
    double result = norm(a.translation() - b.translation());
    for (const Vector3& axis : {Vector3(1.0, 0.0, 0.0), Vector3(0.0, 1.0, 0.0), Vector3(0.0, 0.0, 1.0)}) {
        result = std::max(result, norm(a.rotate(axis) - b.rotate(axis)));
    }
    return result;
}

TEST_F(Transforms, TurnByRollThenPitchThenHeading)
{
    const Transform quarter({10.0, 0.0, 0.0, 0.0, 0.0, pi / 2});
    EXPECT_LT(norm(quarter * Vector3(1.0, 0.0, 0.0) - Vector3(10.0, 1.0, 0.0)), 1e-15);
    EXPECT_LT(norm(Transform({0.0, 0.0, 0.0, 0.0, pi / 2, 0.0}).rotate({1.0, 0.0, 0.0}) - Vector3(0.0, 0.0, -1.0)), 1e-15);
    EXPECT_LT(norm(Transform({0.0, 0.0, 0.0, pi / 2, 0.0, 0.0}).rotate({0.0, 1.0, 0.0}) - Vector3(0.0, 0.0, 1.0)), 1e-15);
    for (int i = 0; i < 1000; ++i) {
        const Mark pose = randomPose();
        const Transform steps = Transform({pose.x, pose.y, pose.z, 0.0, 0.0, pose.heading})
            * Transform({0.0, 0.0, 0.0, 0.0, pose.pitch, 0.0}) * Transform({0.0, 0.0, 0.0, pose.roll, 0.0, 0.0});
        ASSERT_LT(apart(steps, Transform(pose)), 1e-14);
    }
}

TEST_F(Transforms, AreAGroup)
{
    for (int i = 0; i < 1000; ++i) {
        const Transform a(randomPose()), b(randomPose()), c(randomPose());
        const Vector3 p(random(-10.0, 10.0), random(-10.0, 10.0), random(-10.0, 10.0));
        ASSERT_LT(norm(a * b * p - a * (b * p)), 1e-11);
        ASSERT_LT(apart(a * b * c, a * (b * c)), 1e-11);
        ASSERT_LT(apart(a * a.inverse(), Transform()), 1e-11);
        ASSERT_LT(apart(a.inverse() * a, Transform()), 1e-11);
        ASSERT_LT(apart((a * b).inverse(), b.inverse() * a.inverse()), 1e-11);
    }
}

TEST_F(Transforms, BecomePosesInRangeOfTheSameTransform)
{
    for (int i = 0; i < 100'000; ++i) {
        const Transform transform(randomPose());
        const Mark pose = transform.toMark();
        ASSERT_TRUE(std::fabs(pose.pitch) <= pi / 2 && std::fabs(pose.roll) <= pi && std::fabs(pose.heading) <= pi);
        ASSERT_LT(apart(Transform(pose), transform), 1e-12);
    }
}

// Nose up or down heading and roll cannot be told apart.
TEST_F(Transforms, AreConsistentWhereThePitchIsARightAngle)
{
    for (const double off : {0.0, 1e-17, 1e-16, 1e-12, 1e-9, 1e-8, 1e-7, 1e-5}) {
        for (int i = 0; i < 2000; ++i) {
            const double pitch = (i % 2 == 0 ? 1.0 : -1.0) * (pi / 2 - off);
            const Transform transform(Mark(1.0, 2.0, 3.0, random(-10.0, 10.0), pitch, random(-10.0, 10.0)));
            const Transform away(randomPose());
            for (const Transform& each : {transform, away.inverse() * (away * transform)}) { // the latter is rounded
                const Mark pose = each.toMark();
                ASSERT_TRUE(std::isfinite(pose.roll) && std::isfinite(pose.pitch) && std::isfinite(pose.heading));
                ASSERT_LT(apart(Transform(pose), each), 1e-12) << off;
            }
        }
    }
    // Exactly upright, with nothing left for the heading.
    const Transform up = Transform({0.0, 0.0, 0.0, 0.3, pi / 2, 0.0});
    EXPECT_LT(apart(Transform(up.toMark()), up), 1e-15);
}

} // namespace
} // namespace brv
