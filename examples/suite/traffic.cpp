/// Five vehicles around the ego on a closed road, in simulated time, that others find in shared memory.
#include "EgoTrack.h"
#include "SceneConfiguration.h"
#include "TrafficShm.h"
#include "VehicleFollower.h"

#include <brvUtils/platform/CrashDump.h>
#include <brvUtils/time/FrameTimer.h>

#include <chrono>
#include <cmath>
#include <cstdio>

namespace {

using namespace suite;

constexpr double period = 0.01; // seconds

class Traffic : public VehicleFollower
{
public:
    Traffic()
        : model_(configuredRoad(), configuredTraffic())
    {
    }

    std::string begin(const VehicleRun& run) override
    {
        speedFactor_ = run.speedFactor;
        track_ = EgoTrack(run.speedFactor);
        char text[200];
        const ClosedRoad& road = model_.road();
        std::snprintf(text, sizeof text,
            "%d vehicles at %g x real time on a road of %.0f m: straights of %g m, curves of radius %g m, lanes of %g m", trafficCount,
            run.speedFactor, road.length(), road.straight(), road.radius(), road.laneWidth());
        return text;
    }

    void work(const VehicleState& vehicle) override
    {
        timer_.run();
        if (track_.look(vehicle, clockNow())) {
            model_.begin(track_.ego().place);
            ++beginnings_;
        }
        catchUp();
        TrafficState state = model_.state();
        state.stamp = clockNow();
        // Whoever died while it looked makes one telling fail: the next one comes soon.
        shm_.tell(state);
    }

    std::string done() const override
    {
        char text[100];
        std::snprintf(text, sizeof text, "%lld frames, %.1f s since the ego came%s", static_cast<long long>(model_.state().frame),
            model_.state().time, beginnings_ > 1 ? " again" : "");
        return text;
    }

private:
    using Clock = std::chrono::steady_clock;

    /// Does the frames that are due, but not for long: what a computer is too slow for it leaves out.
    void catchUp()
    {
        const double due = std::floor(timer_.getCurrentTime() * speedFactor_ / TrafficModel::frameLength);
        const double first = frames_;
        const Clock::time_point limit = Clock::now() + std::chrono::milliseconds(50);
        while (frames_ < due) {
            if (Clock::now() >= limit) {
                frames_ = due;
                return;
            }
            ++frames_;
            model_.step(track_.onItsWay((frames_ - first) / (due - first)));
        }
    }

    TrafficModel model_;
    TrafficShm shm_;
    EgoTrack track_{1.0};
    brvUtils::FrameTimer timer_{period, 0.0, nullptr};
    double speedFactor_ = 1.0;
    double frames_ = 0.0; ///< That fell due so far.
    int beginnings_ = 0;
};

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    return followerMain(argc, argv, "traffic", period, [] { return std::make_unique<Traffic>(); });
}
