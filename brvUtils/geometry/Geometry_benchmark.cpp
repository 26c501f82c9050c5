// What a call of geometry costs, beside the same work in Eigen and Boost.Geometry. The peers' functions are templates of their
// libraries and part of this program; Eigen's are measured once as the compiler inlines them, and once as calls, since most of
// ours are calls of a shared library.

#include "brvUtils/geometry/GeometryPeers_benchmark.h"
#include "brvUtils/geometry/ReferenceFrames.h"
#include "brvUtils/geometry/Segments.h"
#include "brvUtils/geometry/Vectors.h"
#include "testing/BenchmarkTable.h"
#include "testing/Interleaved.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <iterator>
#include <random>
#include <vector>

namespace {

using namespace brvTesting;
using namespace geometryBenchmark;

constexpr std::size_t inputs = 1024; // 10 bits

constexpr std::size_t poseInputs = 256;

std::mt19937 generator(1);

double random(double low, double high)
{
    return std::uniform_real_distribution<double>(low, high)(generator);
}

volatile double sink;

/// The inputs come in an order that does not return: a module does not meet the same segments over and over, so the processor
/// must not learn which branches are taken.
std::uint64_t state = 1;

/// `work` takes the number of an input and gives something of the result.
template <typename Work>
Contender contender(const char* who, Work work)
{
    const auto run = [work](std::uint64_t iterations) {
        return nanosecondsOf([&] {
            double sum = 0.0;
            for (std::uint64_t i = 0; i < iterations; ++i) {
                state = state * 6364136223846793005 + 1442695040888963407;
                sum += work(state >> 54);
            }
            sink = sum;
        });
    };
    // Short runs are those by which the length of the others is found: one that is interrupted must not pass for slow work.
    return {who, [run](std::uint64_t iterations) { return iterations > 4096 ? run(iterations) : std::min(run(iterations), run(iterations)); }};
}

/// Ours is the first.
BenchmarkRow row(const std::string& what, const std::vector<Contender>& contenders)
{
    const std::vector<double> times = medianPerIteration(contenders, {401, std::chrono::milliseconds(1)});
    BenchmarkRow result{what, "ns", times[0]};
    for (std::size_t i = 1; i < times.size(); ++i) {
        result.peers.emplace_back(contenders[i].name, times[i]);
    }
    return result;
}

/// Keeps a peer from being inlined: its call costs what ours does, but for the way to another library.
template <auto peer, typename... Arguments>
[[gnu::noinline]] auto called(Arguments&... arguments)
{
    return peer(arguments...);
}

constexpr const char* inlined = "Eigen inlined";
constexpr const char* asCall = "Eigen called";

/// Four points, as each library has them.
struct Points
{
    Points()
    {
        for (std::size_t i = 0; i < 4; ++i) {
            ours[i] = {random(-10.0, 10.0), random(-10.0, 10.0)};
            eigen[i] = {ours[i].x, ours[i].y};
        }
        boostA = {{ours[0].x, ours[0].y}, {ours[2].x, ours[2].y}};
        boostB = {{ours[1].x, ours[1].y}, {ours[3].x, ours[3].y}};
    }

    std::array<brv::Vector2, 4> ours;
    std::array<Vector2d, 4> eigen;
    BoostSegment boostA;
    BoostSegment boostB;
};

BenchmarkRow intersectionRow(const std::vector<Points>& points)
{
    const auto ours = [&](std::size_t i) {
        const auto& [a0, b0, a1, b1] = points[i].ours;
        brv::Vector2 result;
        double sA = 0.0, sB = 0.0;
        return brvUtils::intersectionOfSegmentsParametricCoords(result, a0, b0, a1, b1, sA, sB) ? result.x + sA + sB : 0.0;
    };
    const auto eigen = [&](std::size_t i) {
        const auto& [a0, b0, a1, b1] = points[i].eigen;
        Vector2d result;
        double sA = 0.0, sB = 0.0;
        return intersection(result, a0, b0, a1, b1, sA, sB) ? result.x() + sA + sB : 0.0;
    };
    const auto eigenCalled = [&](std::size_t i) {
        const auto& [a0, b0, a1, b1] = points[i].eigen;
        Vector2d result;
        double sA = 0.0, sB = 0.0;
        return called<intersection>(result, a0, b0, a1, b1, sA, sB) ? result.x() + sA + sB : 0.0;
    };
    const auto boost = [&](std::size_t i) {
        BoostPoint result;
        return boostIntersection(result, points[i].boostA, points[i].boostB) ? result.x() : 0.0;
    };
    return row("intersectionOfSegmentsParametricCoords",
        {contender("ours", ours), contender(inlined, eigen), contender(asCall, eigenCalled), contender("Boost.Geometry", boost)});
}

BenchmarkRow distanceRow(const std::vector<Points>& points)
{
    const auto ours = [&](std::size_t i) {
        const auto& [p1, q1, p2, q2] = points[i].ours;
        brv::Vector2 between;
        return static_cast<double>(brvUtils::squareDistanceSegmentToSegment(between, p1, q1, p2, q2)) + between.x;
    };
    const auto eigen = [&](std::size_t i) {
        const auto& [p1, q1, p2, q2] = points[i].eigen;
        Vector2d between;
        return static_cast<double>(squareDistance(between, p1, q1, p2, q2)) + between.x();
    };
    const auto eigenCalled = [&](std::size_t i) {
        const auto& [p1, q1, p2, q2] = points[i].eigen;
        Vector2d between;
        return static_cast<double>(called<squareDistance>(between, p1, q1, p2, q2)) + between.x();
    };
    return row("squareDistanceSegmentToSegment", {contender("ours", ours), contender(inlined, eigen), contender(asCall, eigenCalled)});
}

BenchmarkRow projectionRow(const std::vector<Points>& points)
{
    const auto ours = [&](std::size_t i) {
        double abscissa, gap;
        brvUtils::abscissaAndGap(points[i].ours[0], points[i].ours[1], points[i].ours[2], abscissa, gap);
        return abscissa + gap;
    };
    const auto eigen = [&](std::size_t i) {
        double abscissa, gap;
        projection(points[i].eigen[0], points[i].eigen[1], points[i].eigen[2], abscissa, gap);
        return abscissa + gap;
    };
    const auto eigenCalled = [&](std::size_t i) {
        double abscissa, gap;
        called<projection>(points[i].eigen[0], points[i].eigen[1], points[i].eigen[2], abscissa, gap);
        return abscissa + gap;
    };
    return row("abscissaAndGap", {contender("ours", ours), contender(inlined, eigen), contender(asCall, eigenCalled)});
}

/// As of a vehicle: in any direction, and nearly upright.
EigenPose randomPose()
{
    return {{random(-100.0, 100.0), random(-100.0, 100.0), random(-5.0, 5.0)}, {random(-3.1, 3.1), random(-0.2, 0.2), random(-0.2, 0.2)}};
}

BenchmarkRow rotationRow(const std::vector<EigenPose>& poses)
{
    const auto ours = [&](std::size_t i) {
        const EigenPose& pose = poses[i % poseInputs];
        brv::Vector3 angles(pose.angles.x(), pose.angles.y(), pose.angles.z());
        const brv::Vector3 v = brvUtils::applyAngles({pose.position.x(), pose.position.y(), pose.position.z()}, angles);
        return v.x + v.y + v.z;
    };
    const auto eigen = [&](std::size_t i) { return rotated(poses[i % poseInputs].position, poses[i % poseInputs].angles).sum(); };
    const auto eigenCalled = [&](std::size_t i) { return called<rotated>(poses[i % poseInputs].position, poses[i % poseInputs].angles).sum(); };
    return row("applyAngles", {contender("ours", ours), contender(inlined, eigen), contender(asCall, eigenCalled)});
}

BenchmarkRow chainRow(const std::vector<EigenPose>& poses)
{
    constexpr std::size_t length = 5; // a pose within four frames
    std::deque<brvUtils::Base> bases; // these stay where they are as more are added
    std::deque<brvUtils::RelativePosition> positions;
    std::vector<const brvUtils::RelativePosition*> ends;
    for (std::size_t i = 0; i < poseInputs; ++i) {
        brvUtils::Base* base = brvUtils::RelativePosition::getGlobalBase();
        for (std::size_t k = length; k-- > 0;) {
            const EigenPose& pose = poses[i + k];
            positions.emplace_back(base,
                brv::Mark(pose.position.x(), pose.position.y(), pose.position.z(), pose.angles.z(), pose.angles.y(), pose.angles.x()));
            base = &bases.emplace_back(&positions.back());
        }
        ends.push_back(&positions.back());
    }
    const auto ours = [&](std::size_t i) {
        const brv::Mark place = ends[i % poseInputs]->getAbsolutePlace();
        return place.x + place.heading;
    };
    const auto eigen = [&](std::size_t i) {
        const EigenPose place = absolutePlace(&poses[i % poseInputs], length);
        return place.position.x() + place.angles.x();
    };
    const auto eigenCalled = [&](std::size_t i) {
        const EigenPose* const first = &poses[i % poseInputs];
        const EigenPose place = called<absolutePlace>(first, length);
        return place.position.x() + place.angles.x();
    };
    return row("getAbsolutePlace within 4 frames", {contender("ours", ours), contender(inlined, eigen), contender(asCall, eigenCalled)});
}

} // namespace

int main(int argc, char** argv)
{
    BenchmarkTable table(argc, argv);
    const std::vector<Points> points(inputs);
    std::vector<EigenPose> poses;
    std::generate_n(std::back_inserter(poses), poseInputs + 4, randomPose);
    table.add(intersectionRow(points));
    table.add(distanceRow(points));
    table.add(projectionRow(points));
    table.add(rotationRow(poses));
    table.add(chainRow(poses));
    return table.finish();
}
