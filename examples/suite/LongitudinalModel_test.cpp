#include "LongitudinalModel.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace suite;

namespace {

constexpr double step = 0.005;

void drive(LongitudinalModel& car, double force, double seconds)
{
    for (double time = 0.0; time < seconds; time += step) {
        car.step(force, step);
    }
}

} // namespace

TEST(LongitudinalModel, forceAgainstTyresAndAirMovesTheCar)
{
    CarData data;
    data.dragArea = 0.0;
    LongitudinalModel rolling(data);
    drive(rolling, data.mass * (1.0 + data.rollingResistance * 9.81), 10.0);
    EXPECT_NEAR(rolling.acceleration(), 1.0, 1e-9);
    EXPECT_NEAR(rolling.speed(), 10.0, 0.01);
    EXPECT_NEAR(rolling.distance(), 50.0, 0.1);

    data = CarData{};
    data.rollingResistance = 0.0;
    LongitudinalModel flying(data);
    drive(flying, 400.0, 600.0);
    EXPECT_NEAR(flying.speed(), std::sqrt(400.0 / (0.6 * data.dragArea)), 0.01);
}

TEST(LongitudinalModel, neverRollsBackwards)
{
    LongitudinalModel car;
    drive(car, -1000.0, 1.0);
    EXPECT_EQ(car.distance(), 0.0);
    drive(car, 100.0, 1.0); // less than the tyres resist
    EXPECT_EQ(car.speed(), 0.0);
    drive(car, 3000.0, 2.0);
    EXPECT_GT(car.speed(), 1.0);
    drive(car, -8000.0, 5.0);
    EXPECT_EQ(car.speed(), 0.0);
    EXPECT_EQ(car.acceleration(), 0.0);
}

TEST(LongitudinalModel, givesWhatEngineTyresAndBrakesCan)
{
    const CarData data;
    LongitudinalModel car(data);
    car.step(1e6, step);
    EXPECT_EQ(car.force(), data.driveForce);
    drive(car, 1e6, 20.0);
    EXPECT_NEAR(car.force() * car.speed(), data.power, 0.01 * data.power);
    car.step(-1e6, step);
    EXPECT_EQ(car.force(), -data.brakeForce);
}
