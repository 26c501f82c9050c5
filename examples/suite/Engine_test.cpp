// The engines that come with the suite, and plug-ins that are none.
#include "Engine.h"

#include "Modules_test.h"
#include "testing/TemporaryFolder.h"

#include <brvUtils/core/Errors.h>

#include <algorithm>

using namespace suite;

namespace {

struct Traction
{
    const char* engine;
    double speed; // m/s
    int gear;
    double force; // N
};

/// What an attempt to load it says.
std::string faultOf(const std::string& plugIn)
{
    try {
        Engine engine(plugIn);
    } catch (const brvUtils::PluginError& fault) {
        return fault.what();
    }
    return "none";
}

} // namespace

TEST(Engine, givesWhatTorquePowerAndGearAllow)
{
    const Traction tractions[] = {
        {"petrol", 0.0, 0, 4500.0}, {"petrol", 10.0, 1, 4500.0}, {"petrol", 30.0, 5, 1500.0},
        {"diesel", 0.0, 1, 4800.0}, {"diesel", 5.0, 0, 0.0}, {"diesel", 12.0, 1, 0.0}, {"diesel", 12.0, 2, 2900.0},
        {"diesel", 40.0, 5, 1100.0}, {"diesel", 46.5, 9, 50e3 / 46.5},
        {"electric", 0.0, 0, 5000.0}, {"electric", 30.0, 1, 2000.0}, {"electric", 36.0, 1, 0.0},
    };
    for (const Traction& traction : tractions) {
        const Engine engine(traction.engine);
        EXPECT_DOUBLE_EQ(engine.model().tractionForce(traction.speed, traction.gear), traction.force)
            << traction.engine << " at " << traction.speed << " m/s in gear " << traction.gear;
        EXPECT_THAT(engine.model().name(), StartsWith(traction.engine));
    }
}

TEST(Engine, whatIsNoneIsToldInOneLine)
{
    const struct
    {
        const char* plugIn;
        const char* text;
    } faults[] = {
        {"steam", "no engine steam: "},
        {"engine_foreign", "suiteEngineInterface"},
        {"engine_unmade", "suiteMakeEngine"},
        {"engine_late", "no engine engine_late: its interface is 2, that of this program 1"},
        {"engine_throwing", "no engine engine_throwing: the tank is empty"},
        {"engine_empty", "no engine engine_empty: it makes none"},
        {"../engine/petrol", "no engine ../engine/petrol: this is no name of a plug-in"},
        {"", "this is no name of a plug-in"},
    };
    for (const auto& fault : faults) {
        const std::string text = faultOf(fault.plugIn);
        EXPECT_THAT(text, HasSubstr(fault.text));
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 0) << text;
    }
}

class VehiclesEngine : public Modules
{
};

TEST_F(VehiclesEngine, isThatOfTheConfigurationUnlessTheCommandLineNamesAnother)
{
    ChildProcess standard = start("vehicle", {});
    EXPECT_EQ(lineWith(standard, "vehicle: engine "), "vehicle: engine petrol, 45 kW");
    standard.kill();
    ChildProcess chosen = start("vehicle", {"-engine", "electric"});
    EXPECT_EQ(lineWith(chosen, "vehicle: engine "), "vehicle: engine electric, 60 kW");
}

TEST_F(VehiclesEngine, thatCannotBeHadEndsTheVehicle)
{
    for (const std::string plugIn : {"steam", "engine_foreign", "engine_unmade", "engine_late", "engine_throwing", "engine_empty"}) {
        ChildProcess vehicle = start("vehicle", {"-engine", plugIn});
        EXPECT_EQ(vehicle.wait(deadline), failure) << plugIn;
        const std::string& said = vehicle.errorOutput();
        EXPECT_THAT(said, StartsWith("vehicle: no engine " + plugIn + ": "));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    }
}
