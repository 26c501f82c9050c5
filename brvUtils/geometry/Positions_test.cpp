#include "brvUtils/geometry/Positions.h"

#include <gtest/gtest.h>

namespace brvUtils {
namespace {

TEST(Positions, LieToTheLeftOfADirection)
{
    EXPECT_EQ(offsetPosition({1.0, 2.0, 3.0}, {1.0, 7.0, 3.0}, 2.0), brv::Vector3(-1.0, 2.0, 3.0));
    EXPECT_EQ(offsetPosition({1.0, 2.0, 3.0}, {6.0, 2.0, 3.0}, -2.0), brv::Vector3(1.0, 0.0, 3.0));
    EXPECT_EQ(offsetPosition({0.0, 0.0, 0.0}, {3.0, 0.0, 4.0}, 10.0), brv::Vector3(0.0, 6.0, 0.0)) << "a slope shortens it";
    EXPECT_EQ(offsetPosition({1.0, 2.0, 3.0}, {1.0, 2.0, 3.0}, 2.0), brv::Vector3(1.0, 2.0, 3.0));
    EXPECT_EQ(offsetPosition({1.0, 2.0, 3.0}, {1.0 + 5e-7, 2.0, 3.0}, 2.0), brv::Vector3(1.0, 2.0, 3.0));
}

TEST(Positions, LieToTheLeftOfAHeading)
{
    brv::Vector3 position(1.0, 2.0, 3.0);
    for (float heading = -9.0f; heading < 9.0f; heading += 0.1f) {
        const brv::Vector3 beside = offsetGap(position, heading, 4.0) - position;
        ASSERT_NEAR(beside.x, -4.0 * std::sin(heading), 1e-5);
        ASSERT_NEAR(beside.y, 4.0 * std::cos(heading), 1e-5);
        ASSERT_EQ(beside.z, 0.0);
    }
}

} // namespace
} // namespace brvUtils
