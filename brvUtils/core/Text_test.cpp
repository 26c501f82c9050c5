#include "brvUtils/core/Text.h"

#include <gtest/gtest.h>

#include <limits>

namespace brvUtils {
namespace {

TEST(Text, ComparesWithoutRegardToCase)
{
    EXPECT_EQ(toupper("aZ\xE9-1"), "AZ\xE9-1") << "bytes beyond ASCII stay in the C locale";
    EXPECT_EQ(tolower("aZ\xC9-1"), "az\xC9-1");
    EXPECT_TRUE(strCompareCI("abc", "ABC"));
    EXPECT_FALSE(strCompareCI("abc", "abcd"));
    EXPECT_FALSE(strCompareCI("abc", "abd"));
}

TEST(Text, WritesFloatsWithTheDecimalsAskedFor)
{
    EXPECT_EQ(float_to_string(3.14159F, 2), "3.14");
    EXPECT_EQ(float_to_string(-2.5F, 0), "-2");
    EXPECT_EQ(float_to_string(std::numeric_limits<float>::max(), 20).size(), 39U) << "cut, not overflowing";
}

TEST(Text, WritesSizesInUnitsThatStartAboveTheirPowerOf1024)
{
    EXPECT_EQ(byteSizeToString(0), "0 B");
    EXPECT_EQ(byteSizeToString(1024), "1024 B");
    EXPECT_EQ(byteSizeToString(1025), "1 KB");
    EXPECT_EQ(byteSizeToString(2047), "1 KB");
    EXPECT_EQ(byteSizeToString(1048576), "1024 KB");
    EXPECT_EQ(byteSizeToString(1048577), "1.00 MB");
    EXPECT_EQ(byteSizeToString(1073741824), "1024.00 MB");
    EXPECT_EQ(byteSizeToString(1610612736), "1.50 GB");
    EXPECT_EQ(byteSizeToString(1099511627776), "1024.00 GB");
    EXPECT_EQ(byteSizeToString(std::numeric_limits<std::uint64_t>::max()), "16777216.00 TB");
}

TEST(Text, ReadsAndWritesBitsModulo32)
{
    unsigned int value = 0;
    setBit(value, 31, true);
    setBit(value, 32, true);
    EXPECT_EQ(value, 0x80000001U);
    EXPECT_TRUE(getBit(value, 63));
    EXPECT_FALSE(getBit(value, 1));
    setBit(value, 31, false);
    setBit(value, 5, false);
    EXPECT_EQ(value, 1U);
}

} // namespace
} // namespace brvUtils
