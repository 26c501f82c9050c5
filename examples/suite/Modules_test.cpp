// The two programs as a user runs them.
#include "Modules_test.h"
#include "VehicleShm.h"

#include <brvUtils/ipc/ShmWin32.h>

#include <sstream>

namespace {

struct Line
{
    double wall = 0, time = 0, speed = 0, target = 0, distance = 0, frame = 0, age = 0;
};

Line parse(const std::string& text)
{
    Line line;
    std::string module;
    std::istringstream stream(text);
    stream >> module >> line.wall >> line.time >> line.speed >> line.target >> line.distance >> line.frame >> line.age;
    EXPECT_FALSE(stream.fail()) << text;
    return line;
}

} // namespace

TEST_F(Modules, displayShowsWhatTheVehicleDoesAndEndsWithIt)
{
    ChildProcess display = start("display", {"-p", "screen", "-wait", "30", "-silence", "30"});
    lineWith(display, "screen: waiting at most 30 s for the vehicle");
    ChildProcess vehicle = start("vehicle", {"-seconds", "2.5"});
    lineWith(display, "screen: the vehicle drives ECE-15 (195 s) at 20 x real time");
    EXPECT_THAT(lineWith(display, "distance"), StartsWith("screen: "));

    // A busy computer may leave the display no time for a line before the vehicle has ended.
    std::string text = display.readLine(deadline).value_or("");
    Line before;
    while (!text.empty() && text.find("has ended") == std::string::npos) {
        const Line line = parse(text);
        EXPECT_GT(line.wall, before.wall);
        EXPECT_GE(line.frame, before.frame);
        EXPECT_GE(line.distance, before.distance);
        EXPECT_NEAR(line.time, line.frame * 0.005, 0.051); // as rounded in the line
        EXPECT_NEAR(line.speed, line.target, 2.0);
        EXPECT_GE(line.age, 0.0);
        before = line;
        text = display.readLine(deadline).value_or("");
    }
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

TEST_F(Modules, bothMayStartAtOnce)
{
    for (int round = 0; round < 5; ++round) {
        instance_ = brvTesting::uniqueName();
        ChildProcess display = start("display", {"-wait", "30", "-silence", "30"});
        ChildProcess vehicle = start("vehicle", {"-seconds", "0"});
        EXPECT_THAT(lineWith(display, "display: the vehicle drives"), HasSubstr("drives ECE-15 (195 s) at 20 x real time"));
    }
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

BRV_CHILD(holder)
{
    struct Segment : brvUtils::CompositeShm
    {
        suite::ValuePart<suite::VehicleState, 1> state;
        suite::ValuePart<suite::VehicleRun, 2> run;

        Segment()
            : CompositeShm(brvUtils::ShmWin32::New, brvUtils::SemaphoreWin32::New, "Vehicle", sizeof state.value + sizeof run.value, 1, 0)
        {
        }
        bool hold() { return addPart(state) && addPart(run) && getAccess(state, 1.0) && getAccess(run, 1.0); }
    };
    Segment segment;
    brvTesting::childSay(segment.hold() ? "holding" : "failed");
    brvTesting::childHear();
    return 0;
}

TEST_F(Modules, vehicleStartsAfterAModuleDiedWhileItHeldTheParts)
{
    ChildProcess display = start("display", {"-wait", "30"}); // keeps the segment
    lineWith(display, "display: waiting");
    brvTesting::Child holder("holder", {}, {{"STUDIO_INSTANCE", instance_}});
    holder.awaitLine("holding");
    holder.kill();
    ChildProcess vehicle = start("vehicle", {"-seconds", "0.1"});
    EXPECT_EQ(vehicle.wait(deadline), success) << vehicle.errorOutput();
    lineWith(display, "display: the vehicle has ended after 2.0 s");
}

TEST_F(Modules, vehicleEndsInTimeHoweverSlowTheComputer)
{
    ChildProcess vehicle = start("vehicle", {"-speed", "1000", "-seconds", "1"});
    lineWith(vehicle, "vehicle: ended");
    EXPECT_EQ(vehicle.wait(deadline), success) << vehicle.errorOutput();
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
        {"vehicle", {"-speed", "fast"}, "vehicle: Flag '-speed' requires a float argument"},
        {"vehicle", {"-speed", "0"}, "vehicle: -speed is 0.1 to 1000, not 0"},
        {"vehicle", {"-p", "car", "-seconds", "-1"}, "car: -seconds is 0 to 100000, not -1"},
        {"vehicle", {"-p", "car", "-data", "no/such/place"}, "car: the driving cycle no/such/place cannot be opened"},
        {"vehicle", {"-loud"}, "loud"},
        {"display", {"twice"}, "display: 'twice' is no flag"},
        {"display", {"-wait", "-1"}, "display: -wait is 0 to 100000, not -1"},
        {"display", {"-silence", "0"}, "display: -silence is 0.1 to 100000, not 0"},
        {"display", {"-h"}, "Seconds to wait"},
    };
    for (const auto& mistake : mistakes) {
        ChildProcess module = start(mistake.module, mistake.arguments);
        EXPECT_EQ(module.wait(deadline), failure) << mistake.text;
        EXPECT_THAT(module.errorOutput(), HasSubstr(mistake.text));
    }
}
