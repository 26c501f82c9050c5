#include "brvUtils/core/LabelledText.h"

#include "testing/CapturedOutput.h"

#include <gtest/gtest.h>

#include <sstream>

namespace brvUtils {
namespace {

TEST(LoadLabel, ReadsTheLabelAndTellsAboutAnother)
{
    std::istringstream stream("speed 12 mass");
    std::string found = "untouched";
    EXPECT_TRUE(loadLabel(stream, "speed", found, 0));
    EXPECT_EQ(found, "untouched");

    brvTesting::CapturedOutput captured;
    EXPECT_FALSE(loadLabel(stream, "weight", found, 0));
    EXPECT_EQ(found, "12");
    EXPECT_EQ(captured.err(), "Error with tag in file: weight expected but 12 found.\n");
    EXPECT_FALSE(loadLabel(stream, "weight", nullptr, 1));
    EXPECT_FALSE(loadLabel(stream, std::string("weight"), found, 1)) << "the text is at its end";
    EXPECT_EQ(found, "");
    EXPECT_EQ(captured.err(), "Error with tag in file: weight expected but 12 found.\n") << "quiet stays quiet";
}

TEST(LoadLabel, CutsLongWordsToTheBuffer)
{
    std::istringstream stream(std::string(300, 'x') + " next");
    char found[256];
    EXPECT_FALSE(loadLabel(stream, "next", found, 1));
    EXPECT_EQ(std::string(found), std::string(255, 'x'));
    EXPECT_FALSE(loadLabel(stream, "next", found, 1));
    EXPECT_EQ(std::string(found), std::string(45, 'x'));
    EXPECT_TRUE(loadLabel(stream, "next", found, 1));
}

TEST(LoadLabelTry, ConsumesNothingWhenItFails)
{
    std::istringstream stream("first last");
    std::string found = "untouched";
    EXPECT_FALSE(loadLabelTry(stream, "other", found, 1));
    EXPECT_EQ(found, "untouched");
    EXPECT_TRUE(loadLabelTry(stream, "first", found, 1));
    EXPECT_EQ(found, "first");
    EXPECT_FALSE(loadLabelTry(stream, "other", nullptr, 1)) << "reads up to the end of the text";
    EXPECT_TRUE(loadLabel(stream, "last", nullptr, 1));
}

class LoadLabelTryWithExceptions : public testing::TestWithParam<std::ios::iostate>
{
};

TEST_P(LoadLabelTryWithExceptions, ConsumesNothingAtTheEndOfTheTextEither)
{
    std::istringstream stream("word \n");
    ASSERT_TRUE(loadLabel(stream, "word", nullptr, 1));
    stream.exceptions(GetParam());
    EXPECT_FALSE(loadLabelTry(stream, "word", nullptr, 1));
    EXPECT_EQ(stream.rdstate(), std::ios::goodbit);
    EXPECT_EQ(stream.tellg(), 4);
    EXPECT_EQ(stream.exceptions(), GetParam());
    EXPECT_EQ(stream.width(), 0) << "the next word is not cut";

    stream.exceptions(std::ios::goodbit);
    stream.setstate(std::ios::failbit);
    try {
        stream.exceptions(GetParam());
    } catch (const std::ios::failure&) {
        // It has failed already.
    }
    EXPECT_FALSE(loadLabelTry(stream, "word", nullptr, 1));
    EXPECT_TRUE(stream.fail()) << "a failure from before is not hidden";
    EXPECT_EQ(stream.exceptions(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Any, LoadLabelTryWithExceptions,
    testing::Values(std::ios::goodbit, std::ios::failbit, std::ios::eofbit, std::ios::failbit | std::ios::badbit | std::ios::eofbit));

TEST(LoadLabelTry, PassesNoExceptionOn)
{
    std::istringstream stream("first");
    stream.exceptions(std::ios::failbit | std::ios::eofbit);
    EXPECT_FALSE(loadLabelTry(stream, "first", nullptr, 1)) << "this stream throws as it meets its end";
    EXPECT_EQ(stream.exceptions(), std::ios::failbit | std::ios::eofbit);
    stream.exceptions(std::ios::failbit);
    EXPECT_TRUE(loadLabel(stream, "first", nullptr, 1)) << "the word is still there";
    EXPECT_FALSE(loadLabelTry(stream, "first", nullptr, 1));
}

TEST(SkipEndSection, StopsBehindTheMatchingBrace)
{
    std::string rest;
    std::istringstream nested("a { b } c } rest");
    EXPECT_TRUE(skipEndSection(nested));
    nested >> rest;
    EXPECT_EQ(rest, "rest");

    std::istringstream last("a }");
    EXPECT_TRUE(skipEndSection(last)) << "the brace is the very last character";
    std::istringstream open("a { b } c");
    EXPECT_FALSE(skipEndSection(open));

    std::string deep;
    for (int i = 0; i < 200000; ++i) {
        deep += "{ ";
    }
    std::istringstream unclosed(deep);
    EXPECT_FALSE(skipEndSection(unclosed)) << "a broken file must not exhaust the stack";
}

} // namespace
} // namespace brvUtils
