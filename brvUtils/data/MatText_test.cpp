#include "brvUtils/data/internal/MatText.h"

#include <gtest/gtest.h>

namespace {

using brvUtils::charactersOf;
using Texts = std::vector<std::string>;

Texts ofUtf8(const std::string& text, std::size_t most = 99)
{
    return charactersOf(text.data(), text.size(), most);
}

Texts ofUtf16(const std::vector<std::uint16_t>& text, std::size_t most = 99)
{
    return charactersOf(text.data(), text.size(), most);
}

TEST(MatText, TakesUtf8Apart)
{
    EXPECT_EQ(ofUtf8("aä€😀"), (Texts{"a", "ä", "€", "😀"}));
    EXPECT_EQ(ofUtf8("aä€😀", 2), (Texts{"a", "ä"}));
    EXPECT_EQ(ofUtf8(std::string("\0b", 2)), (Texts{std::string(1, '\0'), "b"}));
    EXPECT_EQ(ofUtf8(""), Texts());
}

TEST(MatText, LeavesBytesThatAreNoUtf8Alone)
{
    const Texts eachByte[] = {
        {"\xE4", "b"}, {"\xC3"}, {"\xE2", "\x82"}, {"\xC0", "\x80"}, {"\xE0", "\x9F", "\xBF"}, {"\xED", "\xA0", "\x80"},
        {"\xF0", "\x8F", "\xBF", "\xBF"}, {"\xF4", "\x90", "\x80", "\x80"}, {"\xF0", "\x9F", "\x98"}, {"\xE2", "\x82", "c"}, {"\xFF"},
    };
    for (const Texts& bytes : eachByte) {
        std::string all;
        for (const std::string& byte : bytes) {
            all += byte;
        }
        EXPECT_EQ(ofUtf8(all), bytes);
    }
    EXPECT_EQ(ofUtf8("\xED\x9F\xBF\xF4\x8F\xBF\xBF"), (Texts{"\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}));
}

TEST(MatText, MakesUtf8OfUtf16)
{
    EXPECT_EQ(ofUtf16({'a', 0xE4, 0x7FF, 0x800, 0x20AC, 0xD83D, 0xDE00}), (Texts{"a", "ä", "\xDF\xBF", "\xE0\xA0\x80", "€", "😀"}));
    EXPECT_EQ(ofUtf16({0xD83D, 'a', 0xDE00, 0xD83D}), (Texts{"\xEF\xBF\xBD", "a", "\xEF\xBF\xBD", "\xEF\xBF\xBD"}));
    EXPECT_EQ(ofUtf16({'a', 'b', 'c'}, 2), (Texts{"a", "b"}));
}

} // namespace
