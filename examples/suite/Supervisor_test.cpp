// The supervisor and the modules that it starts, as a user runs them.
#include "Modules_test.h"
#include "Process.h"
#include "SupervisorRows_test.h"
#include "testing/TemporaryFolder.h"

#include <optional>
#include <sstream>

using testing::EndsWith;

namespace {

/// The last row in a text that shows the module in that state.
SupervisorRow lastRow(const std::string& text, const std::string& module, const std::string& state)
{
    std::optional<SupervisorRow> last;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::optional<SupervisorRow> row = supervisorRow(line);
        last = row && row->shows(module, state) ? row : last;
    }
    EXPECT_TRUE(last.has_value()) << module << " is never \"" << state << "\" in\n" << text;
    return last.value_or(SupervisorRow());
}

class Supervisor : public Modules
{
protected:
    /// Starts it with vehicle and display; a busy computer kills nothing.
    ChildProcess supervise(const Arguments& more = {})
    {
        Arguments arguments = {"-modules", "display -wait 100 -silence 100, vehicle -seconds 0", "-grace", "0", "-pause", "0.1"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return start("supervisor", arguments);
    }

    /// The next row of the table that shows the module in that state.
    SupervisorRow row(ChildProcess& supervisor, const std::string& module, const std::string& state)
    {
        std::string passed;
        while (const auto line = supervisor.readLine(deadline)) {
            if (const auto row = supervisorRow(*line); row && row->shows(module, state)) {
                return *row;
            }
            passed += *line + "\n";
        }
        ADD_FAILURE() << module << " is never \"" << state << "\" in\n" << passed << supervisor.errorOutput();
        return {};
    }

    /// The next row that shows the module alive with the figures of its beat.
    SupervisorRow rowWithFigures(ChildProcess& supervisor, const std::string& module)
    {
        SupervisorRow next;
        do {
            next = row(supervisor, module, "alive");
        } while (next.process != 0 && next.note.empty());
        return next;
    }

    /// What it wrote until nobody had its output open any more: it and all whom it started.
    std::string restOf(ChildProcess& supervisor)
    {
        std::string text;
        while (const auto line = supervisor.readLine(deadline)) {
            text += *line + "\n";
        }
        EXPECT_FALSE(supervisor.outputOpen()) << "a process is left behind\n" << text;
        return text;
    }
};

} // namespace

TEST_F(Supervisor, startsAKilledModuleAgainAndLeavesNoneBehindWhenItIsKilledItself)
{
    ChildProcess supervisor = supervise();
    row(supervisor, "display", "start");
    const std::uint32_t vehicle = row(supervisor, "vehicle", "alive").process;
    ASSERT_TRUE(suite::killProcess(vehicle));
    const SupervisorRow dead = row(supervisor, "vehicle", "dead");
    EXPECT_EQ(dead.process, vehicle);
    EXPECT_THAT(dead.note, HasSubstr("; starts again in 0.1 s"));
    const SupervisorRow restart = row(supervisor, "vehicle", "restart");
    EXPECT_NE(restart.process, vehicle);
    EXPECT_EQ(restart.note, "start 2 of 3");
    lineWith(supervisor, "vehicle: restarted at 0 s: the vehicle before was broken off at ");
    row(supervisor, "vehicle", "alive");
    supervisor.kill();
    restOf(supervisor);
}

TEST_F(Supervisor, showsTheBeatsAndEndsAllInOrder)
{
    // A module that is given up makes the others end.
    ChildProcess supervisor = supervise({"-modules", "display -silence 100, vehicle -seconds 0, display -p screen", "-tries", "1"});
    lineWith(supervisor, "jitter p50 us");
    lineWith(supervisor, "display: the vehicle drives ");
    const SupervisorRow beats = rowWithFigures(supervisor, "vehicle");
    std::istringstream figures(beats.note);
    double rate = 0.0, last = 0.0, median = -1.0, most = -1.0, maximum = -1.0;
    EXPECT_TRUE(figures >> rate >> last >> median >> most >> maximum) << beats.note;
    EXPECT_GT(rate, 0.0);
    EXPECT_GT(last, 0.0);
    EXPECT_LE(0.0, median);
    EXPECT_LE(median, most);
    EXPECT_LE(most, maximum);

    ASSERT_TRUE(suite::killProcess(rowWithFigures(supervisor, "screen").process));
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), failure) << supervisor.errorOutput();
    EXPECT_THAT(lastRow(text, "screen", "failed").note, HasSubstr("; given up after 1 starts"));
    EXPECT_THAT(text, HasSubstr("vehicle: stopped: "));
    EXPECT_THAT(text, HasSubstr("display: the vehicle has ended after ")) << "it is to end behind the vehicle";
    EXPECT_EQ(lastRow(text, "vehicle", "ended").note, "ended with code 0");
    EXPECT_EQ(lastRow(text, "display", "ended").note, "ended with code 0");
}

TEST_F(Supervisor, endsWithModulesThatEndByThemselves)
{
    ChildProcess supervisor = supervise({"-modules", "vehicle -explain data -p guide, vehicle -seconds 0.3 -p car"});
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), success) << supervisor.errorOutput();
    EXPECT_EQ(lastRow(text, "car", "ended").note, "ended with code 0");
    EXPECT_EQ(lastRow(text, "guide", "ended").note, "ended with code 0");
    EXPECT_THAT(text, EndsWith("supervisor: all modules have ended\n"));
}

TEST_F(Supervisor, givesEachModuleTheVariablesInFrontOfIt)
{
    const brvTesting::TemporaryFolder tree("brv-täst");
    std::filesystem::copy(programFolder() / "suite", tree.path(), std::filesystem::copy_options::recursive);
    ChildProcess supervisor = supervise(
        {"-modules", "A= STUDIO_PATH=/nowhere STUDIO_PATH=" + tree.file() + " vehicle -p far -explain data, vehicle -p near -explain data"});
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), success) << supervisor.errorOutput();
    const auto dataOf = [&](const std::string& module) {
        const std::size_t place = text.find(module + ":     SUITE_DATA = ");
        return place == text.npos ? "nothing in\n" + text : text.substr(place, text.find('\n', place) - place);
    };
    EXPECT_THAT(dataOf("far"), HasSubstr(tree.path().filename().u8string())) << "the last of that name counts";
    EXPECT_THAT(dataOf("near"), HasSubstr((programFolder().filename() / "suite").generic_u8string())) << "the supervisor's own";
}

TEST_F(Supervisor, aModuleThatIsDeadWhenTheTimeIsOverHasFailed)
{
    ChildProcess supervisor = supervise({"-modules", "vehicle -speed 0", "-seconds", "1", "-pause", "100"});
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), failure);
    lastRow(text, "vehicle", "failed");
    EXPECT_THAT(text, EndsWith("supervisor: not all modules did their work\n"));
}

TEST_F(Supervisor, givesUpAModuleThatFailsAtEveryStartAndEndsTheOthers)
{
    ChildProcess supervisor = supervise({"-modules", "display, vehicle -speed 0", "-tries", "2"});
    EXPECT_EQ(row(supervisor, "vehicle", "failed").note, "ended with code 1; given up after 2 starts");
    row(supervisor, "display", "ended");
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), failure);
    EXPECT_THAT(text, EndsWith("supervisor: not all modules did their work\n"));
}

TEST_F(Supervisor, mistakesAreExplained)
{
    const struct
    {
        Arguments arguments;
        const char* text;
    } mistakes[] = {
        {{"-modules", "vehicle, submarine"}, "supervisor: there is no module submarine in "},
        {{"-modules", "vehicle, vehicle"}, "supervisor: two modules are called vehicle"},
        {{"-modules", " , "}, "supervisor: no modules to start"},
        {{"-modules", "bin/vehicle"}, "supervisor: bin/vehicle is no name of a module"},
        {{"-modules", "vehicle -p my\\car"}, "supervisor: my\\car is no name of a module"},
        {{"-modules", "vehicle, RFM2G_NODE=1"}, "supervisor: no module stands behind the variable RFM2G_NODE"},
        {{"-modules", "2ND=1 vehicle"}, "supervisor: \"2ND=1\" sets no variable"},
        {{"-modules", "=1 vehicle"}, "supervisor: \"=1\" sets no variable"},
        {{"-grace", "1"}, "supervisor: -grace is 2 to 1000, not 1"},
        {{"-tries", "0"}, "supervisor: -tries is 1 to 1000, not 0"},
    };
    for (const auto& mistake : mistakes) {
        ChildProcess supervisor = start("supervisor", mistake.arguments);
        EXPECT_EQ(supervisor.wait(deadline), failure) << mistake.text;
        EXPECT_THAT(supervisor.errorOutput(), HasSubstr(mistake.text));
    }

    ChildProcess first = supervise();
    row(first, "vehicle", "start");
    ChildProcess second = supervise();
    EXPECT_EQ(second.wait(deadline), failure);
    EXPECT_THAT(second.errorOutput(), HasSubstr("another supervisor runs in this instance of the suite"));
}
