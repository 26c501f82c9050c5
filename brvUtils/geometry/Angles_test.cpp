#include "brvUtils/geometry/Angles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace brvUtils {
namespace {

constexpr double pi = 3.141592653589793;
constexpr float turn = 6.2831855f;
constexpr float largest = 3.1415927f; // the float next to pi, above it

/// What the programs of the suite agree on.
float stepByStep(float angle)
{
    while (angle > pi) {
        angle -= turn;
    }
    while (angle <= -pi) {
        angle += turn;
    }
    return angle;
}

bool sameBits(float a, float b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// Whether it is `angle` but for whole turns, as far as a float of that size tells.
::testing::AssertionResult sameDirection(double angle, double wrapped, double bound)
{
    const double difference = std::hypot(std::sin(angle) - std::sin(wrapped), std::cos(angle) - std::cos(wrapped));
    return difference <= bound ? ::testing::AssertionSuccess()
                               : ::testing::AssertionFailure() << angle << " became " << wrapped << ", " << difference << " away";
}

TEST(Angles, AreWrappedStepByStepUpToAThousandTurns)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> some(-1000.0f * turn, 1000.0f * turn);
    for (int i = 0; i < 20'000; ++i) {
        const float angle = some(generator);
        const float wrapped = checkAngle(angle);
        ASSERT_TRUE(sameBits(wrapped, stepByStep(angle))) << angle;
        // Each step is rounded to the precision of what is left, and by itself is off by the float's error of 2 pi.
        const double steps = std::fabs(angle) / turn + 1.0;
        ASSERT_TRUE(sameDirection(angle, wrapped, steps * (std::fabs(angle) * 0x1p-24 + 2e-7)));
    }
    for (int halves = -2000; halves <= 2000; ++halves) { // the ends of each turn, and what is beside them within the range
        const float angle = static_cast<float>(halves) * 0.5f * turn;
        for (const float each : {angle, std::nextafter(angle, 0.0f), std::nextafter(0.9999f * angle, angle)}) {
            ASSERT_TRUE(sameBits(checkAngle(each), stepByStep(each))) << each;
        }
    }
}

TEST(Angles, AreWrappedAtOnceBeyond)
{
    std::mt19937 generator(2);
    std::uniform_real_distribution<float> exponent(std::log(1001.0f * turn), std::log(1e8f));
    for (int i = 0; i < 20'000; ++i) {
        const float angle = std::exp(exponent(generator)) * (i % 2 == 0 ? 1.0f : -1.0f);
        ASSERT_TRUE(sameDirection(angle, checkAngle(angle), 1.5e-7)); // a float is no nearer
    }
    for (float angle = 1e8f; std::isfinite(angle); angle *= 1.7f) {
        for (const float wrapped : {checkAngle(angle), checkAngle(-angle)}) {
            ASSERT_LE(std::fabs(wrapped), largest) << angle;
        }
        ASSERT_LE(std::fabs(static_cast<double>(checkAngle(angle)) - std::remainder(static_cast<double>(angle), 2.0 * pi)), 1.2e-7) << angle;
    }
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(checkAngle(infinity), infinity);
    EXPECT_EQ(checkAngle02PI(-infinity), -infinity);
    EXPECT_TRUE(std::isnan(checkAngle(std::nanf(""))));
    EXPECT_TRUE(std::isnan(checkAngle02PI(std::nanf(""))));
}

TEST(Angles, HaveHalfATurnOnThePositiveSide)
{
    EXPECT_EQ(checkAngle(largest), largest);
    EXPECT_EQ(checkAngle(-largest), largest);
    EXPECT_NEAR(checkAngle(static_cast<float>(1.5 * pi)), -pi / 2, 1e-6);
    EXPECT_NEAR(checkAngle02PI(static_cast<float>(-pi / 2)), 1.5 * pi, 1e-6);
    EXPECT_EQ(checkAngle02PI(0.0f), 0.0f);
    EXPECT_EQ(checkAngle02PI(turn), 0.0f);
}

TEST(Angles, DifferByNoMoreThanHalfATurnWhicheverIsFirst)
{
    EXPECT_NEAR(diffAngleNotOriented(0.1f, static_cast<float>(2 * pi - 0.1)), 0.2, 1e-6);
    EXPECT_EQ(diffAngleNotOriented(0.0f, -1e-10f), 0.0f) << "not below 0 by rounding";
    std::mt19937 generator(3);
    std::uniform_real_distribution<float> some(-20.0f, 20.0f);
    for (int i = 0; i < 20'000; ++i) {
        const float a = some(generator), b = some(generator);
        const float difference = diffAngleNotOriented(a, b);
        ASSERT_GE(difference, 0.0f);
        ASSERT_LE(difference, pi);
        ASSERT_EQ(difference, diffAngleNotOriented(b, a));
        ASSERT_NEAR(std::cos(difference), std::cos(static_cast<double>(a) - b), 1e-5);
    }
}

TEST(Angles, HaveAMeanOnTheShorterArc)
{
    EXPECT_NEAR(std::fabs(medianAngle(3.0f, -3.0f, 1.0f, 1.0f)), pi, 1e-6);
    std::mt19937 generator(4);
    std::uniform_real_distribution<float> some(-3.1f, 3.1f), weight(0.1f, 5.0f);
    for (int i = 0; i < 20'000; ++i) {
        const float a = some(generator), b = some(generator), weightA = weight(generator), weightB = weight(generator);
        ASSERT_TRUE(sameBits(medianAngle(a, b, weightA, 0.0f), checkAngle(a)));
        const float apart = diffAngleNotOriented(a, b);
        const float mean = medianAngle(a, b, weightA, weightB);
        ASSERT_NEAR(diffAngleNotOriented(a, mean), apart * weightB / (weightA + weightB), 1e-5);
        ASSERT_NEAR(diffAngleNotOriented(b, mean), apart * weightA / (weightA + weightB), 1e-5);
    }
}

TEST(Angles, AreZeroInsteadOfInfinityOrNan)
{
    EXPECT_EQ(isFloat(-1.5f), -1.5f);
    EXPECT_EQ(isDouble(1e300), 1e300);
    for (const double bad : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(isFloat(static_cast<float>(bad)), 0.0f);
        EXPECT_EQ(isDouble(bad), 0.0);
    }
}

} // namespace
} // namespace brvUtils
