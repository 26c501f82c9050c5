#include "LongitudinalModel.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace suite;

namespace {

constexpr double step = 0.005;

/// Gives the same force at each speed, in gear 1.
class Motor : public EngineModel
{
public:
    explicit Motor(double force)
        : force_(force)
    {
    }
    const char* name() const noexcept override { return "motor"; }
    double tractionForce(double, int gear) const noexcept override { return gear == 1 ? force_ : 0.0; }

private:
    double force_;
};

const Motor strong(10e3);

void drive(LongitudinalModel& car, double force, double seconds)
{
    for (double time = 0.0; time < seconds; time += step) {
        car.step(force, 1, step);
    }
}

} // namespace

TEST(LongitudinalModel, forceAgainstTyresAndAirMovesTheCar)
{
    CarData data;
    data.dragArea = 0.0;
    LongitudinalModel rolling(strong, data);
    drive(rolling, data.mass * (1.0 + data.rollingResistance * 9.81), 10.0);
    EXPECT_NEAR(rolling.acceleration(), 1.0, 1e-9);
    EXPECT_NEAR(rolling.speed(), 10.0, 0.01);
    EXPECT_NEAR(rolling.distance(), 50.0, 0.1);

    data = CarData{};
    data.rollingResistance = 0.0;
    LongitudinalModel flying(strong, data);
    drive(flying, 400.0, 600.0);
    EXPECT_NEAR(flying.speed(), std::sqrt(400.0 / (0.6 * data.dragArea)), 0.01);
}

TEST(LongitudinalModel, neverRollsBackwards)
{
    LongitudinalModel car(strong);
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

TEST(LongitudinalModel, givesWhatEngineAndBrakesCan)
{
    LongitudinalModel car(strong);
    car.step(1e6, 1, step);
    EXPECT_EQ(car.force(), 10e3);
    car.step(1e6, 0, step);
    EXPECT_EQ(car.force(), 0.0) << "no gear";
    car.step(-1e6, 0, step);
    EXPECT_EQ(car.force(), -CarData().brakeForce);

    for (const double nonsense : {-1e6, std::nan("")}) {
        const Motor broken(nonsense);
        LongitudinalModel standing(broken);
        drive(standing, 1000.0, 1.0);
        EXPECT_EQ(standing.distance(), 0.0) << nonsense;
    }
}
