// A module that crashes, and what the supervisor makes of it.
#include "Modules_test.h"
#include "testing/TemporaryFolder.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

class Crash : public Modules
{
protected:
    Variables variables() const { return {{"STUDIO_DUMP_DIR", dumps_.file()}, {"STUDIO_DUMP_NO_MSG", "1"}}; }

    /// All that lies below the root.
    std::vector<fs::path> dumps() const
    {
        std::vector<fs::path> found;
        for (const auto& entry : fs::recursive_directory_iterator(dumps_.path())) {
            if (entry.is_regular_file()) {
                found.push_back(entry.path());
            }
        }
        return found;
    }

    /// The dump's path in the supervisor's next row that tells of one. Its words behind the path go to `rest`.
    std::string dumpInRow(ChildProcess& supervisor, std::string& rest)
    {
        const std::string mark = "crashed, dump ";
        const std::string line = lineWith(supervisor, mark);
        const std::size_t from = std::min(line.find(mark), line.size()), to = std::min(line.find(".dmp; ", from), line.size());
        EXPECT_LT(to, line.size()) << line;
        rest = line.substr(to + std::min<std::size_t>(4, line.size() - to));
        return line.substr(std::min(from + mark.size(), to), to - from - mark.size() + 4);
    }

    brvTesting::TemporaryFolder dumps_{"brv-dümps"};

private:
    brvTesting::EnvironmentGuard disable_{"STUDIO_DISABLE_DUMP"}, level_{"STUDIO_PROCESS_DUMP_LEVEL"};
};

} // namespace

TEST_F(Crash, ofEachKindLeavesADump)
{
    std::size_t number = 0;
    for (const std::string kind : {"null", "overflow", "division", "abort", "exception", "thread"}) {
        ChildProcess vehicle = start("vehicle", {"-seconds", "0", "-crash", kind, "-crashAfter", "0.1"}, variables());
        EXPECT_EQ(vehicle.wait(deadline), success) << kind;
        EXPECT_THAT(vehicle.errorOutput(), HasSubstr("Crash Dump generated here: ")) << kind;
        EXPECT_EQ(dumps().size(), ++number) << kind;
    }
}

TEST_F(Crash, ofAKindThatThereIsNotIsRefused)
{
    ChildProcess vehicle = start("vehicle", {"-crash", "softly"});
    EXPECT_EQ(vehicle.wait(deadline), failure);
    EXPECT_THAT(vehicle.errorOutput(), StartsWith("vehicle: -crash knows no \"softly\"; -h tells what it knows"));
}

TEST_F(Crash, isADeathToTheSupervisorWhichNamesTheDump)
{
    ChildProcess supervisor = start("supervisor",
        {"-modules", "display -wait 100 -silence 100, vehicle -seconds 0 -crash null -crashAfter 0.2", "-grace", "0", "-pause", "0.1"}, variables());
    std::string rest;
    const std::string dump = dumpInRow(supervisor, rest);
    EXPECT_EQ(rest, "; starts again in 0.1 s");
    ASSERT_EQ(dumps().size(), 1u);
    EXPECT_TRUE(fs::equivalent(fs::u8path(dump), dumps().front())) << dump;
    // That one does not crash again.
    lineWith(supervisor, "vehicle: restarted at 0 s: the vehicle before was broken off at ");
    lineWith(supervisor, " alive ");
    supervisor.kill();
    while (supervisor.readLine(deadline)) {
    }
    EXPECT_FALSE(supervisor.outputOpen()) << "a process is left behind";
    EXPECT_EQ(dumps().size(), 1u);
}

TEST_F(Crash, beforeTheFirstSignOfLifeIsADeathToo)
{
    // Without anybody else who keeps its segment each start is a first one.
    ChildProcess supervisor = start("supervisor",
        {"-modules", "vehicle -crash abort -crashAfter 0", "-grace", "0", "-pause", "0.1", "-tries", "2"}, variables());
    std::string rest;
    const std::string first = dumpInRow(supervisor, rest);
    EXPECT_EQ(rest, "; starts again in 0.1 s");
    std::string second = first;
    while (second == first && rest.find("starts again") != rest.npos) {
        second = dumpInRow(supervisor, rest);
    }
    EXPECT_NE(second, first);
    EXPECT_EQ(rest, "; given up after 2 starts");
    EXPECT_EQ(supervisor.wait(deadline), failure);
}

TEST_F(Crash, withoutADumpIsADeathWithoutAPath)
{
    Variables noDump = variables();
    noDump.emplace_back("STUDIO_DISABLE_DUMP", "1");
    ChildProcess supervisor = start("supervisor",
        {"-modules", "display -wait 100 -silence 100, vehicle -seconds 0 -crash null -crashAfter 0.5", "-grace", "0"}, noDump);
    EXPECT_THAT(lineWith(supervisor, " dead "), HasSubstr("ended with code 0, but not by itself; starts again in 1 s"));
    EXPECT_TRUE(dumps().empty());
}
