#include "brvUtils/startup/ArgParser.h"

#include "brvUtils/core/Errors.h"
#include "brvUtils/core/FileNames.h"
#include "brvUtils/os/ChildProcess.h"
#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/Process.h"
#include "testing/ThisProgram.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace brvUtils {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;
using Lines = std::vector<std::string>;

/// What the probe writes when it is started with these arguments.
Lines probe(const Lines& arguments, const std::string& variant = "")
{
    std::string extension;
    getExtension(brvUtils::fileName(brvTesting::thisProgram()), extension);
    os::ChildCommand command;
    command.program = getPath(brvTesting::thisProgram()) + "/ArgParser_probe" + extension;
    command.arguments = arguments;
    command.environment = { { "PROBE", variant } };
    command.pipeOutput = true;
    os::ChildProcess process;
    EXPECT_EQ(process.start(command), os::error::none);
    Lines lines;
    while (const auto line = process.readLine(30000)) {
        lines.push_back(*line);
    }
    EXPECT_EQ(process.wait(30000), (os::ChildExit { os::ChildExit::Kind::exited, 0 }));
    return lines;
}

Lines messages(const Lines& lines)
{
    const std::string mark = "message ";
    Lines found;
    for (const std::string& line : lines) {
        if (line.compare(0, mark.size(), mark) == 0) {
            found.push_back(line.substr(mark.size()));
        }
    }
    return found;
}

/// The text of the ProgrammingError that `action` throws.
template <typename Action>
std::string mistake(Action action)
{
    try {
        action();
    } catch (const ProgrammingError& error) {
        return error.what();
    }
    return "nothing thrown";
}

std::string mistakeInDefinitions(const std::string& definitions)
{
    return mistake([&] { ArgParser(0, nullptr, "module", definitions); });
}

const Lines usage = {
    "probe usage:",
    "\t-c (string): Configuration name",
    "\t-cfg (string): Config file",
    "\t-d (dir): Folder (default value: out)",
    "\t-fbs (bool): enable frequency based scheduler (FBS) (default value: false)",
    "\t-hp (bool): Execute with high priority (default value: false)",
    "\t-n (int): Count, at least: one (default value: 5)",
    "\t-p (string): Process name (default value: probe)",
    "\t-pos (guiPos): Position",
    "\t-rt (bool): Execute in realtime (default value: false)",
    "\t-s (string): Name",
    "\t-u (proc): Select on which processor we want to run (default value: -1)",
    "\t-v (bool): Display debug and warning messages on Studio log (default value: false)",
};

TEST(ArgParser, KeepsTheDefaultsWithoutArguments)
{
    const Lines lines = probe({});
    EXPECT_THAT(lines, ElementsAre("good 1", "n 5", "s ", "d out", "pos 0 0 0", "v 0", "p probe", "c ", "cfg ", "u -1", "rt 0", "hp 0", "fbs 0"));
}

TEST(ArgParser, StoresValuesAndCollectsTheRest)
{
    const Lines lines = probe({ "first", "-n", "-5", "-s", "two words", "-c", "Town", "-cfg", "a b.cfg", "-d", "-unknown", "-pos", "+100+200",
        "-p", "car", "-fbs", "-v", "OFF", "last", "" });
    EXPECT_THAT(lines, IsSupersetOf({ "good 1", "n -5", "s two words", "c Town", "cfg a b.cfg", "d -unknown", "pos 1 100 200", "p car", "fbs 1", "v 0",
                           "rest first", "rest last", "rest " }));
    EXPECT_THAT(messages(lines), IsEmpty());
}

TEST(ArgParser, GivesTextInThe8BitCodePageOfTheProcess)
{
    EXPECT_THAT(probe({ "-s", "\xC3\xA9t\xC3\xA9" }), Contains("s " + os::localFromWide(L"\xE9t\xE9")));
}

TEST(ArgParser, TakesANumberAndAnUnknownFlagAsValueButNotAKnownFlag)
{
    EXPECT_THAT(probe({ "-v", "-n", "7" }), IsSupersetOf({ "good 1", "v 1", "n 7" }));
    const Lines lines = probe({ "-s", "-v", "-n" });
    EXPECT_THAT(lines, IsSupersetOf({ "good 0", "v 1", "message Flag '-s' requires an extra argument, none was provided.",
                           "message Flag '-n' requires an integer argument, \"\" was provided." }));
}

TEST(ArgParser, ReportsEveryFaultAndThenTheUsage)
{
    const Lines lines = probe({ "-v", "file.csv", "-x", "-n", "12ab", "rest" });
    EXPECT_THAT(lines, IsSupersetOf({ "good 0", "rest -x", "rest rest" }));
    EXPECT_THAT(lines, Not(Contains("rest file.csv"))) << "a consumed value is no remaining argument";
    Lines expected = { "Flag '-v' requires an extra argument like \"True\" or \"OFF\", \"file.csv\" was provided.", "Unknown flag 'x'",
        "Cannot read the argument for flag '-n', \"12ab\" should be an integer, but it is not so." };
    expected.insert(expected.end(), usage.begin(), usage.end());
    EXPECT_EQ(messages(lines), expected);
}

TEST(ArgParser, ShowsOnlyTheUsageWhenAskedForHelp)
{
    for (const char* flag : { "-h", "-H", "-?" }) {
        const Lines lines = probe({ flag });
        EXPECT_THAT(lines, Contains("good 0"));
        EXPECT_EQ(messages(lines), usage) << flag;
    }
    EXPECT_THAT(probe({ "-h" }, "unmarked"), IsSupersetOf(usage));
}

TEST(ArgParser, FailsWhenADescribedFlagHasNoHandler)
{
    const Lines lines = probe({}, "unhandled");
    EXPECT_THAT(lines, Contains("good 0"));
    EXPECT_THAT(messages(lines), Contains("Described argument 'd' has no handler"));
}

TEST(ArgParser, KnowsNoBuiltInFlagInItsShortForm)
{
    const Lines lines = probe({ "-v", "-h" }, "short");
    EXPECT_THAT(lines, IsSupersetOf({ "good 0", "rest -v", "rest -h" }));
    EXPECT_THAT(messages(lines), ElementsAre("Unknown flag 'v'", "Unknown flag 'h'", " usage:", "\t-d (dir): Folder (default value: out)",
                                     "\t-n (int): Count, at least: one (default value: 5)", "\t-pos (guiPos): Position", "\t-s (string): Name"));
}

TEST(ArgParser, ParsesAgainWithAnEmptyRestAndAGrowingMessage)
{
    const Lines lines = probe({ "-x" }, "twice");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "rest -x"), 1);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "message Unknown flag 'x'"), 2);
}

TEST(ArgParser, SharesTheSchedulerFlagWithALaterParserWhoseDefaultContradictsIt)
{
    const std::string mark = "mistake Trying to add handling of flag '-fbs'";
    EXPECT_THAT(probe({ "-fbs" }, "second"), Contains(StartsWith(mark)));
    EXPECT_THAT(probe({}, "second"), Not(Contains(StartsWith(mark))));
}

TEST(ArgParser, LeavesTheFlagsOfACopyBoundToTheVariablesOfTheOriginal)
{
    EXPECT_THAT(probe({ "-v", "-n", "8", "-c", "Town" }, "copy"), IsSupersetOf({ "v 1", "n 8", "c Town" }));
}

TEST(ArgParser, BindsTheProcessToAProcessor)
{
    os::ProcessorMask process = 0;
    os::ProcessorMask system = 0;
    os::processAffinity(process, system);
    ASSERT_NE(process, 0U);
    int number = 0;
    while ((process >> number & 1U) == 0) {
        ++number;
    }
    const std::string text = std::to_string(number);
    EXPECT_THAT(probe({ "-u", text }), IsSupersetOf(Lines { "good 1", "u " + text, "Process affinity set on processor [" + text + "]",
                                           "Thread affinity set on processor [" + text + "]" }));
}

TEST(ArgParser, RefusesProcessorNumbersOutOfRange)
{
    EXPECT_THAT(messages(probe({ "-u", "40" })), Contains("Max core number reached. Remember that processorId are starting at 0."));
    EXPECT_THAT(messages(probe({ "-u", "-2" })), IsSupersetOf({ "Invalid processor option : should be either -1 (undefined) or positive value ",
                                                     "(id of processor on which we want to run, id starting at 0)" }));
    const Lines bad = messages(probe({ "-u", "abc" }));
    ASSERT_FALSE(bad.empty());
    EXPECT_THAT(bad.front(), AllOf(StartsWith("Flag '-"), testing::HasSubstr("ArgParser_probe"), testing::EndsWith("' requires an integer argument, \"abc\" was provided.")))
        << "the message names the program in place of the flag";
}

TEST(ArgParser, RefusesAProcessorThatTheComputerLacks)
{
    os::ProcessorMask process = 0;
    os::ProcessorMask system = 0;
    os::processAffinity(process, system);
    if ((system >> 31 & 1U) != 0) {
        GTEST_SKIP() << "this computer has it";
    }
    const Lines lines = probe({ "-u", "31" });
    EXPECT_THAT(lines, IsSupersetOf({ "good 0", " . Quitting...", "ProcessorId [31] is not valid on this computer",
                           "message ProcessorId [31] is not valid on this computer", "message Process affinity mask = 0" }));
    EXPECT_THAT(messages(lines), Contains(StartsWith("System affinity mask = ")));
}

TEST(ArgParser, GoesOnWhenThePriorityIsRefused)
{
    for (const char* flag : { "-rt", "-hp" }) {
        const Lines lines = probe({ flag });
        EXPECT_THAT(lines, AllOf(Contains("good 1"), Contains(std::string(flag + 1) + " 1")));
        EXPECT_THAT(messages(lines), testing::AnyOf(IsEmpty(), ElementsAre("Failed to set real time mode.")));
    }
}

TEST(ArgParser, RejectsMalformedDefinitions)
{
    EXPECT_EQ(mistakeInDefinitions("a:int:0;"), "ArgParser: Argument description \"a:int:0\" is invalid");
    EXPECT_EQ(mistakeInDefinitions(":int:0:x;"), "ArgParser: Argument description \":int:0:x\" is invalid");
    EXPECT_EQ(mistakeInDefinitions("a:int:0:x;;"), "ArgParser: Argument description \"\" is invalid");
    EXPECT_EQ(mistakeInDefinitions("a:bool:0:x;v:bool:false:x;"), "ArgParser: Trying to set description of argument '-v' which is already described");
    EXPECT_EQ(mistakeInDefinitions("not even a description"), "nothing thrown");
    EXPECT_EQ(mistakeInDefinitions(" v:bool:false:a flag of its own, blank included;"), "nothing thrown");
}

TEST(ArgParser, RejectsHandlersThatContradictTheDescription)
{
    int number = 3;
    std::string text;
    bool given = false;
    ArgParser parser(0, nullptr, "n:int:5:x;s:string::x;odd:int:five:x;size:guiSize:1x1:x;");
    EXPECT_EQ(mistake([&] { parser.addIntHandler("z", number); }), "ArgParser: Trying to add handling of flag '-z' which is not described");
    EXPECT_EQ(mistake([&] { parser.addIntHandler("s", number); }), "ArgParser: Trying to add handling of flag '-s' which is described as a different type");
    EXPECT_EQ(mistake([&] { parser.addIntHandler("n", number); }), "Trying to add handling of flag '-n' which is described with a different default value");
    EXPECT_EQ(number, 5) << "the described default is stored all the same";
    EXPECT_EQ(mistake([&] { parser.addIntHandler("odd", number); }), "Flag '-odd' requires an integer argument, \"five\" was provided.");
    EXPECT_EQ(mistake([&] { parser.addGUISizeHandler("size", given, number, number); }),
        "Trying to add handling of flag '-size' which is described with a non empty default value");
    parser.addStringHandler("s", text);
    EXPECT_EQ(mistake([&] { parser.addStringHandler("s", text); }), "ArgParser: Trying to add handling of flag '-s' which is already handled");
}

} // namespace
} // namespace brvUtils
