#include "VehicleSimulation.h"

#include "CycleFile.h"
#include "Engine.h"
#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

using namespace suite;

/// Engine and cycle.
class VehicleOnCycle : public testing::TestWithParam<std::tuple<const char*, const char*>>
{
};

INSTANTIATE_TEST_SUITE_P(All, VehicleOnCycle,
    testing::Combine(testing::Values("petrol", "diesel", "electric"),
        testing::Values("data/cycles/ece15.txt", "config/ExtraUrban/data/cycles/eudc.txt")));

TEST_P(VehicleOnCycle, staysWithinTheToleranceOfTheRegulation)
{
    const auto tree = std::filesystem::u8path(brvTesting::thisProgram()).parent_path() / "suite";
    const auto& [plugIn, cycle] = GetParam();
    const Engine engine(plugIn);
    VehicleSimulation simulation(loadCycle(tree / cycle), engine.model());
    const double tolerance = 2.0 / 3.6;
    const double duration = simulation.cycle().duration();
    const auto frames = std::llround(2 * duration / VehicleSimulation::frameLength);
    double lastMotion = 0.0; // when it was to move, in simulated seconds
    for (std::int64_t frame = 1; frame <= frames; ++frame) {
        simulation.step();
        const VehicleState& state = simulation.state();
        ASSERT_EQ(state.frame, frame);
        ASSERT_NEAR(state.speed, state.target, tolerance) << "at " << state.time << " s";
        lastMotion = state.target > 0.0 ? state.time : lastMotion;
        if (state.time > lastMotion + 1.0) {
            ASSERT_EQ(state.speed, 0.0) << "creeps at " << state.time << " s";
        }
    }
    EXPECT_NEAR(simulation.state().time, 2 * duration, 1e-6);
    EXPECT_NEAR(simulation.state().distance, 2 * simulation.cycle().distance(), 10.0);
}
