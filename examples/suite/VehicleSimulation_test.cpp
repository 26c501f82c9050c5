#include "VehicleSimulation.h"

#include "CycleFile.h"
#include "testing/ThisProgram.h"

#include <gtest/gtest.h>

using namespace suite;

TEST(VehicleSimulation, followsTheCycleWithinTheToleranceOfTheRegulation)
{
    VehicleSimulation simulation(loadCycle(std::filesystem::u8path(brvTesting::thisProgram()).parent_path() / "data"));
    const double tolerance = 2.0 / 3.6;
    const auto frames = std::llround(2 * simulation.cycle().duration() / VehicleSimulation::frameLength);
    for (std::int64_t frame = 1; frame <= frames; ++frame) {
        simulation.step();
        const VehicleState& state = simulation.state();
        ASSERT_EQ(state.frame, frame);
        ASSERT_NEAR(state.speed, state.target, tolerance) << "at " << state.time << " s";
        if (state.time > 29.0 && state.time < 49.0) {
            ASSERT_EQ(state.speed, 0.0) << "creeps at " << state.time << " s";
        }
    }
    EXPECT_NEAR(simulation.state().time, 390.0, 1e-6);
    EXPECT_NEAR(simulation.state().distance, 2 * simulation.cycle().distance(), 10.0);
}
