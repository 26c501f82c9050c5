// The supervisor and the modules that it starts, as a user runs them.
#include "Modules_test.h"
#include "Process.h"

#include <regex>
#include <sstream>

using testing::EndsWith;

namespace {

constexpr std::size_t npos = std::string::npos;

std::size_t find(const std::string& text, const std::string& expression)
{
    std::smatch match;
    return std::regex_search(text, match, std::regex(expression)) ? static_cast<std::size_t>(match.position()) : npos;
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

    struct Row
    {
        std::uint32_t process = 0;
        std::string note;
    };

    /// The next row of the table that shows the module in that state.
    Row row(ChildProcess& supervisor, const std::string& module, const std::string& state)
    {
        std::string passed;
        while (const auto line = supervisor.readLine(deadline)) {
            std::istringstream words(*line);
            std::string me, name, stateNow;
            double wall = 0.0;
            Row row;
            if (words >> me >> wall >> name >> row.process >> stateNow && me == "supervisor:" && name == module && stateNow == state) {
                std::getline(words >> std::ws, row.note);
                return row;
            }
            passed += *line + "\n";
        }
        ADD_FAILURE() << module << " is never \"" << state << "\" in\n" << passed << supervisor.errorOutput();
        return {};
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
    const Row dead = row(supervisor, "vehicle", "dead");
    EXPECT_EQ(dead.process, vehicle);
    EXPECT_THAT(dead.note, HasSubstr("; starts again in 0.1 s"));
    const Row restart = row(supervisor, "vehicle", "restart");
    EXPECT_NE(restart.process, vehicle);
    EXPECT_EQ(restart.note, "start 2 of 3");
    lineWith(supervisor, "vehicle: restarted at 0 s: the vehicle before was broken off at ");
    row(supervisor, "vehicle", "alive");
    supervisor.kill();
    restOf(supervisor);
}

TEST_F(Supervisor, showsTheBeatsAndEndsAllInOrder)
{
    ChildProcess supervisor = supervise({"-seconds", "2.5"});
    lineWith(supervisor, "jitter p50 us");
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), success) << supervisor.errorOutput();
    EXPECT_NE(find(text, "vehicle +[0-9]+  alive( +[0-9]+[.][0-9]+){5}\n"), npos) << text;
    EXPECT_NE(text.find("vehicle: stopped: "), npos) << text;
    EXPECT_NE(text.find("display: the vehicle has ended after "), npos) << "the display was to end behind the vehicle\n" << text;
    EXPECT_NE(find(text, "vehicle +[0-9]+  ended +ended with code 0"), npos) << text;
    EXPECT_NE(find(text, "display +[0-9]+  ended +ended with code 0"), npos) << text;
    EXPECT_THAT(text, EndsWith("supervisor: all modules have ended\n"));
}

TEST_F(Supervisor, endsWithModulesThatEndByThemselves)
{
    ChildProcess supervisor = supervise({"-modules", "display -p screen, vehicle -seconds 0.3 -p car"});
    const std::string text = restOf(supervisor);
    EXPECT_EQ(supervisor.wait(deadline), success) << supervisor.errorOutput();
    EXPECT_NE(find(text, "car +[0-9]+  ended +ended with code 0"), npos) << text;
    EXPECT_NE(find(text, "screen +[0-9]+  ended +ended with code 0"), npos) << text;
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
