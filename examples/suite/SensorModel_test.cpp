#include "SensorModel.h"

#include <brvUtils/core/Errors.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

using namespace suite;

namespace {

constexpr double pi = 3.141592653589793;

/// A matrix of four rows, which takes points of a pose's frame to the frame that the pose is given in.
using Matrix = std::array<std::array<double, 4>, 4>;

Matrix operator*(const Matrix& a, const Matrix& b)
{
    Matrix product{};
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            for (int i = 0; i < 4; ++i) {
                product[row][column] += a[row][i] * b[i][column];
            }
        }
    }
    return product;
}

/// Composed of the three turns and the way to the position, as they are in any book.
Matrix matrixOf(const brv::Mark& mark)
{
    const double ch = std::cos(mark.heading), sh = std::sin(mark.heading);
    const double cp = std::cos(mark.pitch), sp = std::sin(mark.pitch);
    const double cr = std::cos(mark.roll), sr = std::sin(mark.roll);
    const Matrix move = {{{1, 0, 0, mark.x}, {0, 1, 0, mark.y}, {0, 0, 1, mark.z}, {0, 0, 0, 1}}};
    const Matrix aboutZ = {{{ch, -sh, 0, 0}, {sh, ch, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    const Matrix aboutY = {{{cp, 0, sp, 0}, {0, 1, 0, 0}, {-sp, 0, cp, 0}, {0, 0, 0, 1}}};
    const Matrix aboutX = {{{1, 0, 0, 0}, {0, cr, -sr, 0}, {0, sr, cr, 0}, {0, 0, 0, 1}}};
    return move * aboutZ * aboutY * aboutX;
}

TrafficState trafficAt(double x, double y, double heading)
{
    TrafficState traffic;
    traffic.frame = 7;
    for (TrafficVehicle& vehicle : traffic.vehicles) {
        vehicle.pose[0] = x;
        vehicle.pose[1] = y;
        vehicle.pose[3] = heading;
    }
    return traffic;
}

} // namespace

TEST(SensorModel, agreesWithMatricesComposedByHand)
{
    std::mt19937 random(7);
    const auto anyOf = [&](double most) { return std::uniform_real_distribution<double>(-most, most)(random); };
    const auto anyPose = [&](double room) { return brv::Mark(anyOf(room), anyOf(room), anyOf(room), anyOf(pi), anyOf(1.5), anyOf(pi)); };
    for (int round = 0; round < 1000; ++round) {
        const SensorMounting mounting{anyPose(2.0), anyPose(1.0), 100.0, 2.0};
        const brv::Mark ego = anyPose(500.0);
        const TrafficState traffic = trafficAt(anyOf(500.0), anyOf(500.0), anyOf(pi));
        SensorModel model(mounting);
        model.look({}, traffic); // what was before does not count
        const SensorView view = model.look(ego, traffic);
        const Matrix chain = matrixOf(ego) * matrixOf(mounting.roof) * matrixOf(mounting.sensor);
        EXPECT_EQ(view.frame, 2);
        EXPECT_EQ(view.traffic.frame, 7);
        for (int row = 0; row < 3; ++row) {
            ASSERT_NEAR(view.sensor[row], chain[row][3], 1e-9);
            // From its frame back to the world.
            const double* const p = view.targets[0].position;
            const double world = chain[row][0] * p[0] + chain[row][1] * p[1] + chain[row][2] * p[2] + chain[row][3];
            const double expected = row < 2 ? traffic.vehicles[0].pose[row] : SensorModel::targetHeight;
            ASSERT_NEAR(world, expected, 1e-9);
        }
        const double* const p = view.targets[4].position;
        ASSERT_NEAR(view.targets[4].distance, std::hypot(p[0], p[1], p[2]), 1e-9);
        ASSERT_NEAR(view.targets[4].bearing, std::atan2(p[1], p[0]), 1e-12);
    }
}

TEST(SensorModel, seesWhatIsWithinItsRangeAndFieldOfView)
{
    // Ahead on the roof, and the ego drives in the direction of y.
    SensorModel model({{0.0, 0.0, 1.5, 0.0, 0.0, 0.0}, {1.0, 0.0, SensorModel::targetHeight - 1.5, 0.0, 0.0, 0.0}, 50.0, pi / 2.0});
    const brv::Mark ego(10.0, 20.0, 0.0, 0.0, 0.0, pi / 2.0);
    const auto look = [&](double ahead, double left) { return model.look(ego, trafficAt(10.0 - left, 21.0 + ahead, 0.3)).targets[2]; };
    const SensorTarget target = look(30.0, 10.0);
    EXPECT_NEAR(target.position[0], 30.0, 1e-9);
    EXPECT_NEAR(target.position[1], 10.0, 1e-9);
    EXPECT_NEAR(target.position[2], 0.0, 1e-9);
    EXPECT_NEAR(target.distance, std::sqrt(1000.0), 1e-9);
    EXPECT_NEAR(target.bearing, std::atan2(10.0, 30.0), 1e-9) << "positive to the left";
    EXPECT_EQ(target.inView, 1);

    EXPECT_EQ(look(49.99, 0.0).inView, 1);
    EXPECT_EQ(look(50.01, 0.0).inView, 0) << "too far";
    EXPECT_EQ(look(20.0, 19.9).inView, 1);
    EXPECT_EQ(look(20.0, 20.1).inView, 0) << "too far to the left";
    EXPECT_EQ(look(20.0, -19.9).inView, 1);
    EXPECT_EQ(look(20.0, -20.1).inView, 0) << "too far to the right";
    EXPECT_EQ(look(-20.0, 0.0).inView, 0) << "behind";

    EXPECT_THROW(SensorModel({{}, {}, 0.0, 1.0}), brvUtils::ConfigurationError);
    EXPECT_THROW(SensorModel({{}, {}, 50.0, 7.0}), brvUtils::ConfigurationError);
}
