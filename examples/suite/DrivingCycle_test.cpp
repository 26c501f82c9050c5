#include "DrivingCycle.h"

#include "CycleFile.h"
#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace suite;

namespace {

DrivingCycle ece15()
{
    return loadCycle(std::filesystem::u8path(brvTesting::thisProgram()).parent_path() / "suite/data/cycles");
}

double kilometresPerHourAt(const DrivingCycle& cycle, double time)
{
    return cycle.speedAt(time) * 3.6;
}

} // namespace

TEST(DrivingCycle, urbanCycleHasThePublishedFigures)
{
    const DrivingCycle cycle = ece15();
    EXPECT_EQ(cycle.duration(), 195.0);
    EXPECT_EQ(cycle.nominalDistance(), 1013.0);
    EXPECT_NEAR(cycle.distance(), 1013.0, 5.0);

    // The breakdown that the regulation gives beside the table, in seconds.
    double idling = 0.0, steady = 0.0, gearChanges = 0.0, accelerating = 0.0, fastest = 0.0;
    for (double time = 0.5; time < cycle.duration(); time += 1.0) {
        const std::string& kind = cycle.operationAt(time).kind;
        idling += kind == "idling";
        steady += kind == "steady-speed";
        gearChanges += kind == "gear-change";
        accelerating += kind == "acceleration";
        fastest = std::max(fastest, kilometresPerHourAt(cycle, time));
    }
    EXPECT_EQ(idling, 60.0);
    EXPECT_EQ(steady, 57.0);
    EXPECT_EQ(gearChanges, 8.0);
    EXPECT_EQ(accelerating, 36.0);
    EXPECT_NEAR(fastest, 50.0, 1e-9);
}

TEST(DrivingCycle, speedIsInterpolatedAndStartsAgain)
{
    const DrivingCycle cycle = ece15();
    EXPECT_EQ(cycle.speedAt(0.0), 0.0);
    EXPECT_NEAR(kilometresPerHourAt(cycle, 13.0), 7.5, 1e-9); // half way to the first peak
    EXPECT_NEAR(kilometresPerHourAt(cycle, 20.0), 15.0, 1e-9);
    EXPECT_NEAR(kilometresPerHourAt(cycle, 70.0), 32.0, 1e-9);
    EXPECT_NEAR(kilometresPerHourAt(cycle, 150.0), 50.0, 1e-9);
    EXPECT_NEAR(kilometresPerHourAt(cycle, 170.0), 35.0, 1e-9);
    EXPECT_NEAR(kilometresPerHourAt(cycle, 2 * 195.0 + 150.0), 50.0, 1e-9);
    EXPECT_EQ(cycle.operationAt(195.0).kind, "idling");
    EXPECT_EQ(cycle.operationAt(11.0).kind, "acceleration"); // the moment between two belongs to the later
}
