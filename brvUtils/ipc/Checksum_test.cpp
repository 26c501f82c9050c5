#include "brvUtils/ipc/internal/Checksum.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace brvUtils {
namespace {

std::int32_t oneByOne(const char* data, std::size_t length)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < length; ++i) {
        sum += static_cast<std::uint32_t>(static_cast<signed char>(data[i]));
    }
    return static_cast<std::int32_t>(sum);
}

std::vector<char> randomBytes(std::size_t count)
{
    std::mt19937 random(7);
    std::vector<char> bytes(count);
    for (char& byte : bytes) {
        byte = static_cast<char>(random() & 0xFF);
    }
    return bytes;
}

TEST(AdditiveChecksum, TakesBytesAsSigned)
{
    EXPECT_EQ(additiveChecksum("\x01\xFF\x02", 3), 2);
    EXPECT_EQ(additiveChecksum("\x80", 1), -128);
    EXPECT_EQ(additiveChecksum(nullptr, 0), 0);
}

TEST(AdditiveChecksum, IsThatOfAScalarLoopForEachLengthAtEachAddress)
{
    const std::vector<char> bytes = randomBytes(300);
    for (std::size_t start = 0; start < 64; ++start) {
        for (std::size_t length = 0; length <= 200; ++length) {
            ASSERT_EQ(additiveChecksum(bytes.data() + start, length), oneByOne(bytes.data() + start, length)) << start << ' ' << length;
        }
    }
}

TEST(AdditiveChecksum, DoesNotOverflowInLongParts)
{
    constexpr int length = 65536;
    EXPECT_EQ(additiveChecksum(std::vector<char>(length, '\x80').data(), length), -128 * length);
    EXPECT_EQ(additiveChecksum(std::vector<char>(length, '\x7F').data(), length), 127 * length);
    const std::vector<char> bytes = randomBytes(1 << 20);
    EXPECT_EQ(additiveChecksum(bytes.data(), bytes.size()), oneByOne(bytes.data(), bytes.size()));
    EXPECT_EQ(additiveChecksum(bytes.data() + 1, bytes.size() - 4), oneByOne(bytes.data() + 1, bytes.size() - 4));
}

TEST(AdditiveChecksum, WrapsAt32Bits)
{
    const std::vector<char> bytes((1U << 24) + 1, '\x80'); // -2^31 and one more
    EXPECT_EQ(additiveChecksum(bytes.data(), bytes.size()), INT32_MAX - 127);
}

} // namespace
} // namespace brvUtils
