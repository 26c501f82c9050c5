#include "CycleFile.h"

#include "testing/Child.h"
#include "testing/ThisProgram.h"

#include <brvUtils/core/Errors.h>
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <sstream>

using namespace suite;
using testing::HasSubstr;

namespace {

std::filesystem::path dataFolder()
{
    return std::filesystem::u8path(brvTesting::thisProgram()).parent_path() / "suite/data/cycles";
}

std::string goodText()
{
    std::ifstream file(dataFolder() / "ece15.txt");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What reading says about the file once `from` has become `to` in it.
std::string faultAfter(const std::string& from, const std::string& to)
{
    std::string text = goodText();
    const std::size_t place = text.find(from);
    if (place == std::string::npos) {
        return "nothing to replace";
    }
    text.replace(place, from.size(), to);
    std::istringstream stream(text);
    try {
        readCycle(stream, "cycle");
    } catch (const brvUtils::FileError& fault) {
        return fault.what();
    }
    return "no fault";
}

} // namespace

TEST(CycleFile, isReadFromFolderOrFile)
{
    EXPECT_EQ(loadCycle(dataFolder()).name(), "ECE-15");
    EXPECT_EQ(loadCycle(dataFolder() / "ece15.txt").duration(), 195.0);
}

TEST(CycleFile, durationsMayBeDecimalFractions)
{
    std::string text = "Cycle { Name tenths Duration 0.7 Distance 0 Operations {";
    for (int number = 1; number <= 7; ++number) {
        text += " Operation { Number " + std::to_string(number) + " Phase 1 Kind idling From 0 To 0 Duration 0.1 Until 0."
            + std::to_string(number) + " Gear 0 }";
    }
    std::istringstream stream(text + " } }");
    EXPECT_NEAR(readCycle(stream, "cycle").duration(), 0.7, 1e-9);
}

TEST(CycleFile, missingFileIsNamed)
{
    try {
        loadCycle(dataFolder() / "none.txt");
        FAIL() << "a file that is not there was read";
    } catch (const brvUtils::FileError& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("none.txt cannot be opened"));
    }
}

TEST(CycleFile, damageIsNamedWithItsLine)
{
    EXPECT_EQ(faultAfter("Cycle", "Circle"), "cycle, line 1: \"Cycle\" expected but \"Circle\" found");
    EXPECT_EQ(faultAfter("From 15", "Form 15"), "cycle, line 15: \"From\" expected but \"Form\" found");
    EXPECT_EQ(faultAfter("Duration  4", "Duration  x"), "cycle, line 14: \"Duration\" needs a number, not \"x\"");
    EXPECT_EQ(faultAfter("Duration  4", "Duration 4s"), "cycle, line 14: \"Duration\" needs a number, not \"4s\"");
    EXPECT_EQ(faultAfter("Duration  4", "Duration -4"), "cycle, line 14: the duration must be positive");
    EXPECT_EQ(faultAfter("Until  15", "Until  16"), "cycle, line 14: the durations so far do not add up to this time");
    EXPECT_EQ(faultAfter("Gear 1", "Gear 1e9"), "cycle, line 14: \"Gear\" needs a whole number from 0 to 20");
    EXPECT_EQ(faultAfter("Phase  2", "Phase  2.5"), "cycle, line 14: \"Phase\" needs a whole number from 1 to 1000");
    EXPECT_EQ(faultAfter("0.94", "0.49"), "cycle, line 21: the acceleration is not what speeds and duration give");
    EXPECT_EQ(faultAfter("From 32", "From 23"), "cycle, line 22: the speed jumps between two operations");
    EXPECT_EQ(faultAfter("To 32", "To -2"), "cycle, line 21: a speed is negative");
    EXPECT_EQ(faultAfter("Number  3", "Number  4"), "cycle, line 15: operation 3 expected");
    EXPECT_THAT(faultAfter("Distance  1013", "Distance  994"), HasSubstr("the speeds do not give the distance of the cycle"));
    EXPECT_THAT(faultAfter("Duration  195", "Duration  190"), HasSubstr("the operations do not last as long as the cycle"));
}

TEST(CycleFile, everyCutIsNoticed)
{
    const std::string text = goodText();
    const std::size_t lastBrace = text.rfind('}');
    for (std::size_t length = 0; length <= lastBrace; ++length) {
        std::istringstream stream(text.substr(0, length));
        EXPECT_THROW(readCycle(stream, "cycle"), brvUtils::FileError) << length;
    }
}
