#include "ClosedRoad.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/geometry/Angles.h>
#include <brvUtils/geometry/Vectors.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace suite;

namespace {

constexpr double pi = 3.141592653589793;

double distance(const brv::Mark& a, const brv::Mark& b)
{
    return brv::norm(b.position() - a.position());
}

} // namespace

TEST(ClosedRoad, positionAndHeadingGoOnWithoutAStepAllRoundAndBeyond)
{
    const ClosedRoad road(250.0, 80.0, 3.5);
    constexpr double step = 0.25;
    for (const int lane : {-2, 0, 1}) {
        double driven = 0.0;
        double turned = 0.0;
        brv::Mark before = road.poseAt(-100.0, lane);
        for (double place = step - 100.0; place <= 3.0 * road.length() - 100.0; place += step) {
            const brv::Mark pose = road.poseAt(place, lane);
            const double moved = distance(before, pose);
            ASSERT_NEAR(moved, step * road.stretch(place - step / 2.0, lane), 0.025) << "at " << place;
            // The way from one to the next is the heading half way between.
            const float turn = brvUtils::checkAngle(static_cast<float>(pose.heading - before.heading));
            ASSERT_GE(turn, -1e-6f);
            ASSERT_LE(turn, step / 80.0 + 1e-6);
            const double way = brvUtils::heading({pose.x - before.x, pose.y - before.y});
            ASSERT_LT(brvUtils::diffAngleNotOriented(static_cast<float>(way), static_cast<float>(before.heading)), step / 80.0 + 1e-4);
            driven += moved;
            turned += turn;
            before = pose;
        }
        EXPECT_NEAR(turned, 6.0 * pi, 0.01) << "three times round, to the left";
        EXPECT_NEAR(driven, 3.0 * (500.0 + 2.0 * pi * (80.0 - 3.5 * lane)), 1.0);
    }
}

TEST(ClosedRoad, closes)
{
    const ClosedRoad road(250.0, 80.0, 3.5);
    EXPECT_NEAR(road.length(), 500.0 + 160.0 * pi, 1e-9);
    for (double place = 0.0; place < road.length(); place += 7.0) {
        for (const int lane : {-1, 0, 1}) {
            const brv::Mark pose = road.poseAt(place, lane);
            EXPECT_LT(distance(pose, road.poseAt(place + 3.0 * road.length(), lane)), 1e-4);
            EXPECT_LT(distance(pose, road.poseAt(place - road.length(), lane)), 1e-4);
            const brv::Mark opposite = road.poseAt(place + road.length() / 2.0, lane);
            EXPECT_NEAR(opposite.x, -pose.x, 1e-4);
            EXPECT_NEAR(opposite.y, -pose.y, 1e-4);
        }
    }
    EXPECT_EQ(road.poseAt(0.0, 0), brv::Mark(-125.0, -80.0, 0.0, 0.0, 0.0, 0.0));
    EXPECT_NEAR(road.poseAt(250.0 + 40.0 * pi, 1).x, 125.0 + 80.0 - 3.5, 1e-5) << "lane 1 is within";
    EXPECT_EQ(road.wrapped(-1e-300), 0.0);
    EXPECT_NEAR(road.ahead(road.length() - 10.0, 20.0), 30.0, 1e-9);
    EXPECT_NEAR(road.ahead(20.0, road.length() - 10.0), road.length() - 30.0, 1e-9);
}

TEST(ClosedRoad, aLaneIsAsLongAsItIsStretched)
{
    const ClosedRoad road(250.0, 80.0, 3.5);
    for (const int lane : {-3, 0, 2}) {
        constexpr int steps = 100'000;
        double told = 0.0;
        for (int step = 0; step < steps; ++step) {
            told += road.stretch((step + 0.5) * road.length() / steps, lane) * road.length() / steps;
        }
        EXPECT_NEAR(told, 500.0 + 2.0 * pi * (80.0 - 3.5 * lane), 0.01);
    }
}

TEST(ClosedRoad, refusesWhatIsNone)
{
    EXPECT_THROW(ClosedRoad(0.0, 80.0, 3.5), brvUtils::ConfigurationError);
    EXPECT_THROW(ClosedRoad(250.0, -80.0, 3.5), brvUtils::ConfigurationError);
    EXPECT_THROW(ClosedRoad(250.0, 14.0, 3.5), brvUtils::ConfigurationError) << "no room for the inner lanes";
    EXPECT_THROW(ClosedRoad(250.0, 80.0, std::nan("")), brvUtils::ConfigurationError);
}
