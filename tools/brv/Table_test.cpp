#include "Table.h"

#include <gtest/gtest.h>

#include <cmath>

namespace brvTool {

TEST(Answer, isTheSameForPeopleAndPrograms)
{
    const Answer answer{Fields{"", {{{"name", "Name"}, "x"}, {{"size", "Size"}, {2048, "2 kB"}}}, ""},
        Table{"rows", {{"a", "A"}, {"b", "LONG"}}, {{1, "é"}, {10, nullptr}}, "", ""}};
    EXPECT_EQ(toText(answer, {}), "Name  x\nSize  2 kB\n\n A  LONG\n 1  é\n10  -\n");
    EXPECT_EQ(toJson(answer).dump(), R"({"name":"x","size":2048,"rows":[{"a":1,"b":"é"},{"a":10,"b":null}]})");
}

TEST(Answer, fitsTheTerminalAndKeepsItWhole)
{
    const Answer answer{Table{"rows", {{"a", "A"}, {"b", "B"}}, {{"short", "some words that go on and on"}, {"/a/long/path/to/somewhere", "\x1b[31m\n"}}, "", ""}};
    const std::string text = toText(answer, {30, false});
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_EQ(toText({Table{"", {{"a", "\x1b[2J"}}, {{1}}, "", ""}, Fields{"", {{{"a", "\x1b[2J"}, 1}}, ""}}, {}), "?[2J\n   1\n\n?[2J  1\n") << "names of columns are from files, too";
    for (std::size_t begin = 0, end; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        EXPECT_LE(end - begin, 30u) << text;
    }
    EXPECT_EQ(toText({Table{"", {{"a", "A"}}, {{{"x", "", Tone::bad}}}, "", ""}}, {80, true}), "A\n\x1b[31mx\x1b[0m\n");
    EXPECT_EQ(toText({Table{"", {{"a", "A"}}, {}, "nothing", ""}}, {}), "nothing\n");
    EXPECT_EQ(toJson({Fields{"", {{{"nan", ""}, std::nan("")}}, ""}}).dump(), R"({"nan":null})");
}

} // namespace brvTool
