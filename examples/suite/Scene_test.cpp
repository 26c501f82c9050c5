// Traffic and sensor as a user runs them, and what a recording of them is checked for.
#include "ClosedRoad.h"
#include "Modules_test.h"
#include "Process.h"
#include "Recording.h"
#include "SceneCheck.h"
#include "SensorModel.h"
#include "SupervisorRows_test.h"
#include "TrafficModel.h"
#include "testing/TemporaryFolder.h"

#include <brvUtils/data/DataMatrixFactory.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>

using namespace suite;

namespace {

std::unique_ptr<DataMatrix> load(const std::string& file)
{
    std::unique_ptr<DataMatrix> table(DataMatrixFactory::create(file, ',', CsvDataFile::FORCE_DOUBLE));
    EXPECT_TRUE(table->load(file, {}));
    return table;
}

class Scene : public Modules
{
protected:
    /// The supervisor's next row that shows the module in that state; its process.
    std::uint32_t processOf(ChildProcess& supervisor, const std::string& module, const std::string& state)
    {
        std::string passed;
        while (const auto line = supervisor.readLine(deadline)) {
            if (const auto row = supervisorRow(*line); row && row->shows(module, state)) {
                return row->process;
            }
            passed += *line + "\n";
        }
        ADD_FAILURE() << module << " is never \"" << state << "\" in\n" << passed << supervisor.errorOutput();
        return 0;
    }

    /// Waits until the recording has so many rows more in which the sensor has told something, and the traffic something new.
    bool awaitScene(const std::string& file, std::size_t rows)
    {
        const auto limit = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline);
        std::size_t before = 0;
        for (bool first = true; std::chrono::steady_clock::now() < limit; std::this_thread::sleep_for(std::chrono::milliseconds(50))) {
            const bool exists = std::filesystem::exists(std::filesystem::u8path(file));
            const std::optional<SceneCheck> check = exists ? checkScene(*load(file)) : std::nullopt;
            if (check && first) {
                before = check->rows;
                first = false;
            } else if (check && check->rows >= before + rows && check->trafficFrames > 0.0) {
                return true;
            }
        }
        return false;
    }

    brvTesting::TemporaryFolder folder_{"brv täst"};
};

} // namespace

TEST_F(Scene, trafficAndSensorGoOnWhenTheVehicleIsKilledAndAllAgreeInTheRecording)
{
    std::filesystem::copy(programFolder() / "suite", folder_.path(), std::filesystem::copy_options::recursive);
    const Variables variables = {{"STUDIO_PATH", folder_.file()}, {"SUITE_RUN", "run"}};
    ChildProcess supervisor = start("supervisor", {"-grace", "0", "-pause", "0.1"}, variables);
    lineWith(supervisor, "traffic: 5 vehicles at 20 x real time on a road of 1003 m");
    ASSERT_TRUE(killProcess(processOf(supervisor, "vehicle", "alive")));
    processOf(supervisor, "vehicle", "restart");
    processOf(supervisor, "vehicle", "alive");
    ASSERT_TRUE(killProcess(processOf(supervisor, "sensor", "alive"))); // what is recorded comes from two of them
    processOf(supervisor, "sensor", "restart");
    processOf(supervisor, "sensor", "alive");
    const std::string file = "data/recordings/run.csv";
    ASSERT_TRUE(awaitScene(folder_.file(file), 20));
    supervisor.kill();
    std::string rest;
    while (const auto line = supervisor.readLine(deadline)) {
        rest += *line + "\n";
    }
    EXPECT_FALSE(supervisor.outputOpen()) << "a process is left behind\n" << rest;

    const std::optional<SceneCheck> check = checkScene(*load(folder_.file(file)));
    ASSERT_TRUE(check);
    EXPECT_LT(check->largestError, 1e-6);
    EXPECT_GT(check->trafficFrames, 0.0) << "it was not started anew";
}

TEST_F(Scene, mistakesAreExplained)
{
    std::filesystem::copy(programFolder() / "suite", folder_.path(), std::filesystem::copy_options::recursive);
    const std::string file = "config/Urban/Process.xfg";
    const std::string settings = folder_.read(file);
    const struct
    {
        const char* from;
        const char* to;
        const char* module;
        const char* text;
    } mistakes[] = {
        {"radius = 80", "radius = 8", "traffic", "traffic: a road has straights, curves and lanes of some metres"},
        {"radius = 80", "radius = wide", "sensor", "sensor: \"radius\" in the section \"road\" is to be 1 number, not \"wide\""},
        {"vehicle3 = 1 -30 62", "vehicle3 = 1 28 62", "traffic", "traffic: a vehicle of the traffic starts where another one or the ego does"},
        {"vehicle3 = 1 -30 62", "", "traffic", "has no \"vehicle3\" in the section \"traffic\""},
        {"range = 120", "range = 0", "sensor", "sensor: a sensor has a range above 0 m"},
    };
    for (const auto& mistake : mistakes) {
        std::string changed = settings;
        const std::size_t place = changed.find(mistake.from);
        ASSERT_NE(place, changed.npos) << mistake.from;
        folder_.write(file, changed.replace(place, std::string(mistake.from).size(), mistake.to));
        ChildProcess module = start(mistake.module, {}, {{"STUDIO_PATH", folder_.file()}});
        EXPECT_EQ(module.wait(deadline), failure) << mistake.text;
        EXPECT_THAT(module.errorOutput(), HasSubstr(mistake.text));
    }
}

TEST(SceneCheck, findsWhatASensorHasWrong)
{
    const brvTesting::TemporaryFolder folder;
    const ClosedRoad road(250.0, 80.0, 3.5);
    TrafficModel model(road, {{{0, 40.0, 15.0}, {0, -60.0, 16.0}, {1, -30.0, 18.0}, {1, 25.0, 14.0}, {-1, 80.0, 7.0}}});
    SensorModel sensor({{0.2, 0.0, 1.5, 0.1, 0.0, 0.0}, {0.6, 0.3, 0.1, 0.0, 0.05, 0.1}, 120.0, 1.2});
    const auto record = [&](const std::string& file, double aside, double longer) {
        Recording recording(folder.path() / file, 0.02);
        VehicleState state;
        state.stamp = 1;
        recording.add(state, SensorView(), 1'000'000'000); // the sensor starts later
        model.begin(0.0);
        for (int row = 1; row <= 20; ++row) {
            for (int frame = 0; frame < 50; ++frame) {
                model.step({0.0, 0.0});
            }
            SensorView view = sensor.look(road.poseAt(0.0, 0), model.state());
            view.stamp = 1;
            if (row == 10) {
                view.targets[3].position[1] += aside;
                view.targets[2].distance += longer;
            }
            recording.add(state, view, 1'000'000'000 + row * 20'000'000);
        }
    };
    record("right.csv", 0.0, 0.0);
    record("aside.csv", 0.25, 0.0);
    record("longer.csv", 0.0, -0.5);
    record("nowhere.csv", std::nan(""), 0.0);
    const std::optional<SceneCheck> right = checkScene(*load(folder.file("right.csv")));
    ASSERT_TRUE(right);
    EXPECT_EQ(right->rows, 20u);
    EXPECT_EQ(right->trafficFrames, 19.0 * 50.0);
    EXPECT_LT(right->largestError, 1e-7);
    EXPECT_GT(right->closest, vehicleWidth);
    EXPECT_NEAR(checkScene(*load(folder.file("aside.csv")))->largestError, 0.25, 1e-6);
    EXPECT_NEAR(checkScene(*load(folder.file("longer.csv")))->largestError, 0.5, 1e-6);
    EXPECT_EQ(checkScene(*load(folder.file("nowhere.csv")))->largestError, HUGE_VAL);
    EXPECT_FALSE(checkScene(*load(folder.write("other.csv", "row,time s\n1,2\n"))));
}
