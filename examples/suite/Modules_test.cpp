// The two programs as a user runs them.
#include "testing/Child.h"
#include "testing/ThisProgram.h"
#include "testing/UniqueName.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

using brvTesting::Arguments;
using brvUtils::os::ChildExit;
using brvUtils::os::ChildProcess;
using testing::HasSubstr;

namespace {

constexpr brvUtils::os::Milliseconds deadline = 30'000; // ms
const ChildExit success{ChildExit::Kind::exited, 0};
const ChildExit failure{ChildExit::Kind::exited, 1};

/// Both modules, in an instance of the suite of their own.
class Modules : public testing::Test
{
protected:
    /// Starts the program that lies beside this one.
    ChildProcess start(const std::string& module, const Arguments& arguments)
    {
        const auto self = std::filesystem::u8path(brvTesting::thisProgram());
        brvUtils::os::ChildCommand command;
        command.program = (self.parent_path() / (module + self.extension().string())).u8string();
        command.arguments = arguments;
        command.environment = {{"STUDIO_INSTANCE", instance_}};
        command.pipeOutput = command.pipeError = true;
        ChildProcess process;
        EXPECT_EQ(process.start(command), 0u) << command.program;
        return process;
    }

    /// The next line that holds the text; what stands before it is passed over.
    static std::string lineWith(ChildProcess& process, const std::string& text)
    {
        std::string passed;
        while (const auto line = process.readLine(deadline)) {
            if (line->find(text) != std::string::npos) {
                return *line;
            }
            passed += *line + "\n";
        }
        ADD_FAILURE() << "no line with \"" << text << "\" in\n" << passed << process.errorOutput();
        return {};
    }

    std::string instance_ = brvTesting::uniqueName();
};

struct Line
{
    double wall = 0, time = 0, speed = 0, target = 0, distance = 0, frame = 0, age = 0;
};

Line parse(const std::string& text)
{
    Line line;
    std::istringstream stream(text);
    stream >> line.wall >> line.time >> line.speed >> line.target >> line.distance >> line.frame >> line.age;
    EXPECT_FALSE(stream.fail()) << text;
    return line;
}

} // namespace

TEST_F(Modules, displayShowsWhatTheVehicleDoesAndEndsWithIt)
{
    ChildProcess display = start("display", {"-p", "screen"});
    lineWith(display, "screen: waiting at most 10 s for the vehicle");
    ChildProcess vehicle = start("vehicle", {"-seconds", "2.5"});
    lineWith(display, "screen: the vehicle drives ECE-15 (195 s) at 20 x real time");
    lineWith(display, "km/h");

    // A busy computer may leave the display time for one line only.
    std::string text = display.readLine(deadline).value_or("");
    Line before;
    do {
        const Line line = parse(text);
        EXPECT_GE(line.wall, before.wall + 0.9);
        EXPECT_GT(line.frame, before.frame);
        EXPECT_GT(line.distance, before.distance);
        EXPECT_NEAR(line.time, line.frame * 0.005, 0.051); // as rounded in the line
        EXPECT_NEAR(line.speed, line.target, 2.0);
        EXPECT_GE(line.age, 0.0);
        before = line;
        text = display.readLine(deadline).value_or("");
    } while (!text.empty() && text.find("screen") == std::string::npos);

    EXPECT_THAT(text, HasSubstr("screen: the vehicle has ended after 50.0 s and 53.4 m"));
    EXPECT_THAT(lineWith(vehicle, "vehicle: ended"), HasSubstr("10000 frames, 50.0 s simulated"));
    EXPECT_EQ(vehicle.wait(deadline), success) << vehicle.errorOutput();
    EXPECT_EQ(display.wait(deadline), success) << display.errorOutput();
}

TEST_F(Modules, displayMayStartSecond)
{
    ChildProcess vehicle = start("vehicle", {"-seconds", "0"});
    lineWith(vehicle, "vehicle: ECE-15");
    ChildProcess display = start("display", {});
    lineWith(display, "display: the vehicle drives ECE-15");
}

TEST_F(Modules, displayNoticesThatTheVehicleWasKilled)
{
    ChildProcess vehicle = start("vehicle", {"-seconds", "0"});
    lineWith(vehicle, "vehicle: ECE-15");
    ChildProcess display = start("display", {"-silence", "0.2"});
    lineWith(display, "display: the vehicle drives ECE-15");
    vehicle.kill();
    lineWith(display, "display: the vehicle has been silent for more than 0.2 s");
    EXPECT_EQ(display.wait(deadline), failure);
}

TEST_F(Modules, displayGivesUpWithoutVehicle)
{
    ChildProcess display = start("display", {"-wait", "0.1"});
    lineWith(display, "display: no vehicle came");
    EXPECT_EQ(display.wait(deadline), failure);
}

TEST_F(Modules, mistakesOnTheCommandLineAreExplained)
{
    const struct
    {
        const char* module;
        Arguments arguments;
        const char* text;
    } mistakes[] = {
        {"vehicle", {"-speed", "fast"}, "Flag '-speed' requires a float argument"},
        {"vehicle", {"-speed", "0"}, "-speed is 0.1 to 1000"},
        {"vehicle", {"-seconds", "-1"}, "-seconds is 0 or more"},
        {"vehicle", {"-data", "no/such/place"}, "the driving cycle no/such/place cannot be opened"},
        {"vehicle", {"-loud"}, "loud"},
        {"display", {"twice"}, "'twice' is no flag"},
        {"display", {"-h"}, "Seconds to wait"},
    };
    for (const auto& mistake : mistakes) {
        ChildProcess module = start(mistake.module, mistake.arguments);
        EXPECT_EQ(module.wait(deadline), failure) << mistake.text;
        EXPECT_THAT(module.errorOutput(), HasSubstr(mistake.text));
    }
}
