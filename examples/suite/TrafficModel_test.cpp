#include "TrafficModel.h"

#include "CycleFile.h"
#include "EgoTrack.h"
#include "Engine.h"
#include "VehicleSimulation.h"
#include "testing/ThisProgram.h"

#include <brvUtils/core/Errors.h>
#include <brvUtils/geometry/Segments.h>

#include <gtest/gtest.h>

using namespace suite;

namespace {

const ClosedRoad road(250.0, 80.0, 3.5);

constexpr TrafficPlans plans = {{{0, 40.0, 15.0}, {0, -60.0, 16.0}, {1, -30.0, 18.0}, {1, 25.0, 14.0}, {-1, 80.0, 7.0}}};

/// Along the lane of the ego, from bumper to bumper; negative when they touch.
double leastGap(const TrafficState& state, double egoPlace)
{
    double least = road.length();
    const auto look = [&](double a, double b) {
        least = std::min({least, road.ahead(a, b) - vehicleLength, road.ahead(b, a) - vehicleLength});
    };
    for (int a = 0; a < trafficCount; ++a) {
        for (int b = 0; b < a; ++b) {
            if (state.vehicles[a].lane == state.vehicles[b].lane) {
                look(state.vehicles[a].place, state.vehicles[b].place);
            }
        }
        if (state.vehicles[a].lane == 0) {
            look(state.vehicles[a].place, egoPlace);
        }
    }
    return least;
}

/// The distance of what lies between their bumpers, of the two that are closest in the plane.
double leastDistance(const TrafficState& state)
{
    const auto end = [](const TrafficVehicle& vehicle, double ahead) {
        return brv::Vector2(vehicle.pose[0] + ahead * std::cos(vehicle.pose[3]), vehicle.pose[1] + ahead * std::sin(vehicle.pose[3]));
    };
    constexpr double half = vehicleLength / 2.0;
    float least = 1e6f;
    for (const TrafficVehicle& a : state.vehicles) {
        for (const TrafficVehicle* b = &a + 1; b < state.vehicles + trafficCount; ++b) {
            brv::Vector2 between;
            least = std::min(least,
                brvUtils::squareDistanceSegmentToSegment(between, end(a, -half), end(a, half), end(*b, -half), end(*b, half)));
        }
    }
    return std::sqrt(least);
}

} // namespace

TEST(TrafficModel, nobodyTouchesAnotherInTenMinutesAroundAnEgoOnItsCycle)
{
    const auto tree = std::filesystem::u8path(brvTesting::thisProgram()).parent_path() / "suite";
    const Engine engine("petrol");
    VehicleSimulation ego(loadCycle(tree / "data/cycles/ece15.txt"), engine.model());
    TrafficModel model(road, plans);
    model.begin(0.0);
    bool stood = false;
    double driven[trafficCount] = {};
    constexpr int frames = 30'000;
    for (int frame = 1; frame <= frames; ++frame) {
        for (int part = 0; part < 4; ++part) {
            ego.step();
        }
        model.step({ego.state().distance, ego.state().speed});
        const TrafficState& state = model.state();
        ASSERT_GT(leastGap(state, ego.state().distance), 0.5) << "at " << state.time << " s";
        ASSERT_GT(leastDistance(state), vehicleWidth) << "at " << state.time << " s";
        for (int number = 0; number < trafficCount; ++number) {
            const TrafficVehicle& vehicle = state.vehicles[number];
            ASSERT_GE(vehicle.speed, 0.0);
            ASSERT_LE(vehicle.speed, 18.1);
            driven[number] += vehicle.speed * TrafficModel::frameLength;
            stood = stood || vehicle.speed == 0.0;
        }
    }
    EXPECT_EQ(model.state().frame, frames);
    EXPECT_NEAR(model.state().time, 600.0, 1e-6);
    EXPECT_TRUE(stood) << "somebody has to wait behind the ego";
    EXPECT_LT(driven[1], ego.state().distance + road.length()) << "behind the ego";
    EXPECT_GT(driven[2], 600.0 * 13.0) << "on another lane, held up by a slower one alone";
    EXPECT_NEAR(driven[4], 600.0 * 7.0, 10.0) << "alone in its lane";
}

TEST(TrafficModel, anEgoWhoseVehicleIsKilledIsNotRunInto)
{
    for (const double speedFactor : {1.0, 20.0}) {
        for (const double speed : {4.0, 13.9, 30.0}) {
            TrafficPlans fast = plans;
            fast[0].speed = fast[1].speed = speed + 3.0;
            TrafficModel model(road, fast);
            EgoTrack track(speedFactor);
            VehicleState told;
            told.stamp = 1;
            told.speed = speed;
            for (int frame = 0; frame < 20'000; ++frame) {
                const double time = frame * TrafficModel::frameLength / speedFactor;
                const auto now = 1 + static_cast<std::int64_t>(time * 1e9);
                if (frame < 15'000) {
                    told.frame = frame;
                    told.stamp = now;
                    told.distance = speed * frame * TrafficModel::frameLength;
                }
                if (track.look(told, now)) {
                    ASSERT_EQ(frame, 0);
                    model.begin(track.ego().place);
                }
                model.step(track.ego());
                ASSERT_GT(leastGap(model.state(), track.ego().place), 0.5) << "at " << time << " s, " << speed << " m/s";
            }
            EXPECT_EQ(track.ego().speed, 0.0);
            EXPECT_NEAR(track.ego().place - told.distance, speed * speed / 8.0, 1e-6) << "braked";
            EXPECT_LT(leastGap(model.state(), track.ego().place), 6.0) << "one has closed up";
            EXPECT_EQ(std::min(model.state().vehicles[0].speed, model.state().vehicles[1].speed), 0.0);

            told.stamp = 1 + static_cast<std::int64_t>(1e12);
            told.frame = 0;
            EXPECT_TRUE(track.look(told, told.stamp)) << "started again";
            EXPECT_EQ(track.since(), told.stamp);
        }
    }
}

TEST(TrafficModel, anEgoThatIsSeldomSeenDoesNotJumpOverAnybody)
{
    TrafficModel model(road, plans);
    EgoTrack track(1000.0);
    VehicleState told;
    told.speed = 9.0;
    for (int beat = 0; beat < 200; ++beat) {
        constexpr int frames = 500;
        told.frame = beat;
        told.stamp = 1 + beat * 10'000'000ll;
        told.distance = told.speed * beat * frames * TrafficModel::frameLength;
        if (track.look(told, told.stamp)) {
            model.begin(track.ego().place);
            continue; // it has not driven yet
        }
        for (int frame = 1; frame <= frames; ++frame) {
            const EgoOnRoad ego = track.onItsWay(static_cast<double>(frame) / frames);
            model.step(ego);
            ASSERT_GT(leastGap(model.state(), ego.place), 0.5) << "in beat " << beat;
        }
        ASSERT_NEAR(track.onItsWay(1.0).place, told.distance, 1e-6);
    }
}

TEST(TrafficModel, whoIsSlowInFrontOfTheEgoDrivesOnWhenItComes)
{
    TrafficPlans slow = plans;
    slow[0].speed = slow[1].speed = 5.0;
    TrafficModel model(road, slow);
    model.begin(0.0);
    double place = 0.0;
    double speed = 0.0;
    for (int frame = 0; frame < 5'000; ++frame) {
        speed = std::min(13.9, speed + 0.02);
        place += speed * TrafficModel::frameLength;
        model.step({place, speed});
        ASSERT_GT(leastGap(model.state(), place), 1.0) << "at " << model.state().time << " s";
    }
}

TEST(TrafficModel, beginsAroundTheEgoWhereverThatIs)
{
    TrafficModel model(road, plans);
    model.begin(123456.0);
    EXPECT_NEAR(road.ahead(123456.0, model.state().vehicles[0].place), 40.0, 1e-6);
    EXPECT_NEAR(road.ahead(model.state().vehicles[1].place, 123456.0), 60.0, 1e-6);

    TrafficPlans bad = plans;
    bad[1].start = 33.0;
    EXPECT_THROW(TrafficModel(road, bad), brvUtils::ConfigurationError) << "on top of another one";
    bad = plans;
    bad[0].start = -5.0;
    EXPECT_THROW(TrafficModel(road, bad), brvUtils::ConfigurationError) << "on top of the ego";
    bad = plans;
    bad[4].lane = 4;
    EXPECT_THROW(TrafficModel(road, bad), brvUtils::ConfigurationError);
    bad = plans;
    bad[4].speed = 0.0;
    EXPECT_THROW(TrafficModel(road, bad), brvUtils::ConfigurationError);
}
