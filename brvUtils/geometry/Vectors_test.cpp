#include "brvUtils/geometry/Vectors.h"

#include <gtest/gtest.h>

#include <brv/Mark.h>
#include <brv/Transform.h>

#include <random>

namespace brvUtils {
namespace {

constexpr double pi = 3.141592653589793;

class Vectors : public ::testing::Test
{
protected:
    double random(double low, double high) { return std::uniform_real_distribution<double>(low, high)(generator_); }
    brv::Vector2 randomVector() { return {random(-10.0, 10.0), random(-10.0, 10.0)}; }

private:
    std::mt19937 generator_{1};
};

TEST_F(Vectors, HaveAngles)
{
    EXPECT_DOUBLE_EQ(heading({0.0, -2.0}), -pi / 2);
    EXPECT_DOUBLE_EQ(angleWith({0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}), pi / 2);
    EXPECT_DOUBLE_EQ(angleWithVector({1.0, 0.0}, {0.0, 1.0}), -pi / 2) << "the other way round";
    EXPECT_EQ(angleWith({1.0, 2.0}, {1.0, 2.0}, {3.0, 3.0}), 0.0) << "no direction";
    EXPECT_EQ(angleWithVector({1.0, 0.0}, {0.0, 0.0}), 0.0);
    for (const double length : {0.1, 1.0 / 3.0, 7e8}) { // a cosine that is rounded to more than 1 is still one
        const brv::Vector2 v = length * brv::Vector2(1.0, 0.7);
        EXPECT_NEAR(angleWithVector(v, 3.0 * v), 0.0, 1e-7);
        EXPECT_NEAR(std::fabs(angleWithVector(v, -v)), pi, 1e-7);
    }
    for (int i = 0; i < 10'000; ++i) {
        const brv::Vector2 apex = randomVector(), u = randomVector(), v = randomVector();
        const double angle = angleWithVector(u, v);
        ASSERT_NEAR(angle, -angleWith(apex, apex + u, apex + v), 1e-7);
        ASSERT_DOUBLE_EQ(angle, -angleWithVector(v, u));
        brv::Vector2 turned = normalise(v);
        rotateZ(turned, angle);
        ASSERT_LT(norm(turned - normalise(u)), 1e-7);
    }
}

TEST_F(Vectors, TurnToTheLeft)
{
    for (int i = 0; i < 1000; ++i) {
        const brv::Vector2 v = randomVector();
        const double angle = random(-10.0, 10.0);
        brv::Vector2 plane = v;
        rotateZ(plane, angle);
        EXPECT_NEAR(std::remainder(heading(plane) - heading(v) - angle, 2 * pi), 0.0, 1e-12);
        brv::Vector3 space(v.x, v.y, 5.0);
        rotateZ(space, angle);
        EXPECT_EQ(space, brv::Vector3(plane.x, plane.y, 5.0));
    }
}

TEST_F(Vectors, AreTakenApartByTheBisector)
{
    for (int i = 0; i < 1000; ++i) {
        const brv::Vector2 u = normalise(randomVector()), v = normalise(randomVector());
        brv::Vector2 along, across;
        computeBisectriceAndNormal(u, v, along, across);
        ASSERT_LT(norm(along + across - v), 1e-15);
        ASSERT_NEAR(dot(along, across), 0.0, 1e-15);
        ASSERT_LT(norm(2.0 * along - (u + v)), 1e-9) << "of unit vectors, it is their mean";

        const brv::Vector2 a = randomVector(), b = randomVector(), c = randomVector();
        ASSERT_TRUE(onCSide(a, b, c, c));
        ASSERT_FALSE(onCSide(a, b, c, a));
        ASSERT_TRUE(onCSide(a, b, c, b)) << "on the bisector";
    }
}

TEST_F(Vectors, TurnByThreeAnglesThereAndBack)
{
    for (int i = 0; i < 10'000; ++i) {
        const brv::Vector3 v(random(-10.0, 10.0), random(-10.0, 10.0), random(-10.0, 10.0));
        brv::Vector3 angles(random(-10.0, 10.0), random(-10.0, 10.0), random(-10.0, 10.0));
        const brv::Vector3 turned = applyAngles(v, angles);
        ASSERT_NEAR(norm(turned), norm(v), 1e-13);
        ASSERT_LT(norm(globalToLocal(turned, angles) - v), 1e-13);
        ASSERT_LT(norm(brv::Transform({0.0, 0.0, 0.0, angles.z, angles.y, angles.x}) * v - turned), 1e-13) << "one convention";

        // One after the other: roll turns y towards z, pitch z towards x, heading x towards y.
        brv::Vector2 yz(v.y, v.z);
        rotateZ(yz, angles.z);
        brv::Vector2 zx(yz.y, v.x);
        rotateZ(zx, angles.y);
        brv::Vector3 expected(zx.y, yz.x, zx.x);
        rotateZ(expected, angles.x);
        ASSERT_LT(norm(expected - turned), 1e-13);
    }
}

} // namespace
} // namespace brvUtils
