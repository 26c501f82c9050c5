#include "Utilities/Encoding.h"

#include <gtest/gtest.h>

namespace Utilities::Encoding {
namespace {

TEST(Transcode, TurnsUtf8IntoWideTextAndBack)
{
    // One to four bytes, the first and last character of each length.
    const std::string narrow = "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    const std::wstring wide = L"A\x7F\x80\x7FF\x800\xFFFD\U00010000\U0010FFFF";
    EXPECT_EQ(Transcode(narrow), wide);
    EXPECT_EQ(Transcode(wide), narrow);
    EXPECT_EQ(Transcode(std::string("a\0b", 3)).size(), 3U);
}

TEST(Transcode, KeepsBytesThatAreNotUtf8)
{
    const std::string bad[] = {
        "\x80", "\xFF", "\xC0\xAF", "\xE9t\xE9", // a stray, an impossible and an overlong byte, Latin-1
        "\xE2\x82", "\xF0\x90\x80", // cut short
        "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE0\x80\xAF", // a surrogate, too large, overlong
    };
    for (const std::string& text : bad) {
        EXPECT_EQ(Transcode(Transcode(text)), text);
    }
    EXPECT_EQ(Transcode(std::string("\xE9t")), (std::wstring { static_cast<wchar_t>(0xDCE9), L't' }));
    EXPECT_EQ(Transcode(std::wstring { static_cast<wchar_t>(0xD800), L'a' }), "\xEF\xBF\xBD" "a");
}

TEST(Transcode, KnowsTheLocalCodePage)
{
    EXPECT_EQ(Transcode(std::string("plain"), Mode::Local8Bit), L"plain");
    EXPECT_EQ(Transcode(std::wstring(L"plain"), Mode::Local8Bit), "plain");
    EXPECT_EQ(Transcode(std::string(), Mode::Local8Bit), L"");
}

} // namespace
} // namespace Utilities::Encoding
