/// A sensor on the roof of the ego vehicle: gives the traffic in its own frame, to others in shared memory.
#include "EgoTrack.h"
#include "SceneConfiguration.h"
#include "SensorShm.h"
#include "TrafficShm.h"
#include "VehicleFollower.h"

#include <brvUtils/platform/CrashDump.h>

#include <algorithm>
#include <cstdio>

namespace {

using namespace suite;

constexpr double period = 0.01; // seconds
constexpr double toDegrees = 180.0 / 3.141592653589793;

class Sensor : public VehicleFollower
{
public:
    Sensor()
        : road_(configuredRoad())
        , model_(configuredSensor())
    {
    }

    std::string begin(const VehicleRun& run) override
    {
        track_ = EgoTrack(run.speedFactor);
        char text[100];
        std::snprintf(text, sizeof text, "on the roof, sees %g m far and %g degrees wide", model_.mounting().range,
            model_.mounting().fieldOfView * toDegrees);
        return text;
    }

    void work(const VehicleState& vehicle) override
    {
        TrafficState traffic;
        traffic_.look(traffic);
        track_.look(vehicle, clockNow());
        if (traffic.stamp < track_.since()) {
            return; // it has told nothing so far, or what it told was around the ego before this one
        }
        SensorView view = model_.look(road_.poseAt(track_.ego().place, 0), traffic);
        view.stamp = clockNow();
        // Whoever died while it looked makes one telling fail: the next one comes soon.
        shm_.tell(view);
        looks_ = view.frame;
        const auto isSeen = [](const SensorTarget& target) { return target.inView != 0; };
        const auto seen = std::count_if(view.targets, view.targets + trafficCount, isSeen);
        most_ = std::max(most_, static_cast<int>(seen));
    }

    std::string done() const override
    {
        return std::to_string(looks_) + " looks, at most " + std::to_string(most_) + " vehicles in view";
    }

private:
    ClosedRoad road_;
    SensorModel model_;
    EgoTrack track_{1.0};
    TrafficShm traffic_;
    SensorShm shm_;
    std::int64_t looks_ = 0;
    int most_ = 0; ///< Vehicles in view at once.
};

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    return followerMain(argc, argv, "sensor", period, [] { return std::make_unique<Sensor>(); });
}
