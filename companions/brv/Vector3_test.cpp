#include "brv/Vector2.h"
#include "brv/Vector3.h"

#include <gtest/gtest.h>

#include <sstream>

namespace brv {
namespace {

TEST(Vector3, IsReadAsItIsWritten)
{
    std::stringstream stream;
    stream << Vector3(1.5, -2.0, 3e20) << '\n' << Vector3(4.0, 5.0, 6.0);
    EXPECT_EQ(stream.str(), "1.5 -2 3e+20\n4 5 6");
    Vector3 first, second;
    EXPECT_TRUE(stream >> first >> second);
    EXPECT_EQ(first, Vector3(1.5, -2.0, 3e20));
    EXPECT_EQ(second, Vector3(4.0, 5.0, 6.0));
}

TEST(Vector3, StaysWhatItWasWhenItCannotBeRead)
{
    std::istringstream stream("1 2 x");
    Vector3 v(7.0, 8.0, 9.0);
    EXPECT_FALSE(stream >> v);
    EXPECT_EQ(v, Vector3(7.0, 8.0, 9.0));
}

TEST(Vector2, HasADirectionUnlessItIsZero)
{
    EXPECT_EQ(normalise(Vector2(0.0, -5.0)), Vector2(0.0, -1.0));
    EXPECT_EQ(normalise(Vector2()), Vector2());
    EXPECT_GT(cross({1.0, 0.0}, {0.0, 1.0}), 0.0) << "to the left";
}

} // namespace
} // namespace brv
