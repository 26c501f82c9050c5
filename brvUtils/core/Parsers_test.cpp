#include "brvUtils/core/Parsers.h"

#include <gmock/gmock.h>

#include <cfloat>

namespace brvUtils::Parsers {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string pageFault(const std::string& text)
{
    try {
        parsePrintPages(text);
    } catch (const ParseError& error) {
        return error.what();
    }
    return "nothing thrown";
}

TEST(ParseFloats, TakesBlanksCommasAndSemicolonsBetweenNumbers)
{
    EXPECT_THAT(parseFloats(" 1 -2.5,3e2 ; +4;\t.5\n"), ElementsAre(1.0F, -2.5F, 300.0F, 4.0F, 0.5F));
    EXPECT_THAT(parseFloats("0.1 16777217 3.14159265"), ElementsAre(0.1F, 16777217.0F, 3.14159265F)) << "each is the nearest float";
    EXPECT_THAT(parseFloats(""), IsEmpty());
}

TEST(ParseFloats, EndsAtTheFirstFault)
{
    EXPECT_THAT(parseFloats("1 2 x 3"), ElementsAre(1.0F, 2.0F));
    EXPECT_THAT(parseFloats("1 2,-"), ElementsAre(1.0F, 2.0F));
    EXPECT_THAT(parseFloats("x"), IsEmpty());
    for (const char* word : { "information", "inf", "nanometres", "NaN", "1e39", "-1e39", "1e400" }) {
        EXPECT_THAT(parseFloats("1 2 " + std::string(word) + " 3"), ElementsAre(1.0F, 2.0F)) << word;
    }
    EXPECT_THAT(parseFloats("3.40282347e38 -3.40282347e38"), ElementsAre(FLT_MAX, -FLT_MAX)) << "rounded up in the text";
    EXPECT_THAT(parseFloats("1 \xC3\xA9"), ElementsAre(1.0F));
    EXPECT_NO_THROW(parseFloats("1e-99999 1e999999999999 " + std::string(5000, '9')));
}

TEST(ParsePrintPages, NamesPagesAndRanges)
{
    EXPECT_THAT(parsePrintPages("1-3;5"), ElementsAre(1, 2, 3, 5));
    EXPECT_THAT(parsePrintPages(" 9 ; 2 - 4 ;3"), ElementsAre(2, 3, 4, 9));
    EXPECT_THAT(parsePrintPages("7-7;5-4"), ElementsAre(4, 5, 7));
    EXPECT_THAT(parsePrintPages("4294967294-4294967295"), ElementsAre(4294967294U, 4294967295U));
    EXPECT_THAT(parsePrintPages(""), IsEmpty());
}

TEST(ParsePrintPages, ThrowsTheTextBeforeTheFault)
{
    EXPECT_EQ(pageFault("1-3;x"), "1-3;^");
    EXPECT_EQ(pageFault("1-3;5a"), "1-3;5^");
    EXPECT_EQ(pageFault("1,2"), "1^");
    EXPECT_EQ(pageFault("1 2"), "1 ^");
    EXPECT_EQ(pageFault("1-;2"), "1-^");
    EXPECT_EQ(pageFault("1-2-3"), "1-2^");
    EXPECT_EQ(pageFault("1; "), "1; ^");
    EXPECT_EQ(pageFault("-1"), "^");
    EXPECT_EQ(pageFault("1-\xC3\xA9"), "1-^");
    EXPECT_EQ(pageFault("\xC3\xA9"), "^");
    EXPECT_EQ(pageFault("4294967296"), "^");
}

} // namespace
} // namespace brvUtils::Parsers
