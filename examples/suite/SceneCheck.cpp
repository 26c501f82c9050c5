#include "SceneCheck.h"

#include "Recording.h"
#include "SensorModel.h"

#include <brvUtils/geometry/Segments.h>
#include <brvUtils/geometry/Vectors.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace suite {

namespace {

/// The columns of a recording by name. One that is missing shows in `complete`.
class Columns
{
public:
    explicit Columns(const DataMatrix& table)
        : table_(table)
    {
    }

    const double* operator()(const std::string& name)
    {
        const double* const data = table_.exists(name) ? table_[name]->getDoubleData() : nullptr;
        complete = complete && data != nullptr && table_[name]->size() == table_.getRowsCount();
        return data;
    }

    bool complete = true;

private:
    const DataMatrix& table_;
};

/// Numbers of one kind, such as x, y and z.
template <std::size_t Count>
using Group = std::array<const double*, Count>;

struct Vehicle
{
    Group<3> pose; ///< x, y, heading
    Group<3> seen; ///< x, y, z
    const double* distance = nullptr;
    const double* bearing = nullptr;
    const double* inView = nullptr;
};

struct Scene
{
    Group<3> ego; ///< x, y, heading
    Group<3> sensor; ///< x, y, z
    Group<3> angles; ///< heading, pitch, roll
    const double* frame = nullptr;
    const double* trafficFrame = nullptr;
    std::array<Vehicle, trafficCount> traffic;
};

Scene sceneOf(Columns& column)
{
    Scene scene;
    scene.ego = {column("ego x m"), column("ego y m"), column("ego heading rad")};
    scene.sensor = {column("sensor x m"), column("sensor y m"), column("sensor z m")};
    scene.angles = {column("sensor heading rad"), column("sensor pitch rad"), column("sensor roll rad")};
    scene.frame = column("sensor frame");
    scene.trafficFrame = column("traffic frame");
    for (int number = 0; number < trafficCount; ++number) {
        const auto own = [&](const char* name) { return column(Recording::trafficColumn(number, name)); };
        scene.traffic[number] = {{own("x m"), own("y m"), own("heading rad")}, {own("seen x m"), own("seen y m"), own("seen z m")},
            own("seen distance m"), own("seen bearing rad"), own("in view")};
    }
    return scene;
}

brv::Vector3 vectorAt(const Group<3>& group, std::size_t row)
{
    return {group[0][row], group[1][row], group[2][row]};
}

double errorOf(const Scene& scene, const Vehicle& vehicle, std::size_t row)
{
    const brv::Vector3 middle(vehicle.pose[0][row], vehicle.pose[1][row], SensorModel::targetHeight);
    brv::Vector3 angles = vectorAt(scene.angles, row);
    const brv::Vector3 expected = brvUtils::globalToLocal(middle - vectorAt(scene.sensor, row), angles);
    const double distance = brv::norm(middle - vectorAt(scene.sensor, row));
    const brv::Vector2 ahead(std::cos(vehicle.bearing[row]), std::sin(vehicle.bearing[row]));
    const double aside = brv::cross(ahead, {expected.x, expected.y});
    const double off = brv::norm(vectorAt(vehicle.seen, row) - expected);
    const double errors[] = {off, std::abs(vehicle.distance[row] - distance), std::abs(aside)};
    const bool numbers = std::all_of(std::begin(errors), std::end(errors), [](double error) { return std::isfinite(error); });
    return numbers ? *std::max_element(std::begin(errors), std::end(errors)) : std::numeric_limits<double>::infinity();
}

/// Of the middle lines of two vehicles, from bumper to bumper.
double distanceOf(const Group<3>& one, const Group<3>& other, std::size_t row)
{
    const auto bumper = [row](const Group<3>& pose, double ahead) {
        brv::Vector2 end(ahead, 0.0);
        brvUtils::rotateZ(end, pose[2][row]);
        return end + brv::Vector2(pose[0][row], pose[1][row]);
    };
    constexpr double half = vehicleLength / 2.0;
    brv::Vector2 between;
    return std::sqrt(brvUtils::squareDistanceSegmentToSegment(
        between, bumper(one, -half), bumper(one, half), bumper(other, -half), bumper(other, half)));
}

double closestOf(const Scene& scene, std::size_t row)
{
    double closest = std::numeric_limits<double>::max();
    for (int one = 0; one < trafficCount; ++one) {
        closest = std::min(closest, distanceOf(scene.traffic[one].pose, scene.ego, row));
        for (int other = 0; other < one; ++other) {
            closest = std::min(closest, distanceOf(scene.traffic[one].pose, scene.traffic[other].pose, row));
        }
    }
    return closest;
}

} // namespace

std::optional<SceneCheck> checkScene(const DataMatrix& table)
{
    Columns columns(table);
    const Scene scene = sceneOf(columns);
    if (!columns.complete) {
        return std::nullopt;
    }
    SceneCheck check;
    check.closest = std::numeric_limits<double>::max();
    double before = 0.0; // frame of the traffic
    for (std::size_t row = 0; row < table.getRowsCount(); ++row) {
        if (scene.frame[row] <= 0.0) {
            continue;
        }
        const double frame = scene.trafficFrame[row];
        check.trafficFrames += check.rows++ == 0 ? 0.0 : std::max(0.0, frame - before); // one that is started again begins at 0
        before = frame;
        int inView = 0;
        for (const Vehicle& vehicle : scene.traffic) {
            check.largestError = std::max(check.largestError, errorOf(scene, vehicle, row));
            inView += vehicle.inView[row] != 0.0 ? 1 : 0;
        }
        check.mostInView = std::max(check.mostInView, inView);
        check.closest = std::min(check.closest, closestOf(scene, row));
    }
    if (check.rows == 0) {
        return std::nullopt;
    }
    return check;
}

} // namespace suite
