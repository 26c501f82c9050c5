#include "testing/DemoRecording.h"

#include "testing/IdcWriter.h"

#include <algorithm>
#include <cmath>

namespace brvTesting {

namespace {

constexpr int framesPerSecond = 10;
constexpr int frames = 30 * framesPerSecond;
constexpr std::uint32_t startSeconds = 3972000000u;

/// In steps that hide how the last bits of a computation come about, since these differ between systems.
float coarse(double value)
{
    return static_cast<float>(std::floor(value * 1024.0 + 0.5) / 1024.0);
}

struct Ego
{
    double position = 0, lane = 0; ///< Metres along the road and to the left.
    double speed = 20;
    double acceleration = 0, sideAcceleration = 0;
    double sideSpeed = 0;
};

/// Falls in behind the truck, passes it, and goes back to its lane.
void drive(Ego& ego, double time)
{
    constexpr double step = 1.0 / framesPerSecond;
    const auto between = [time](double from, double to) { return time > from && time < to ? 1.0 : 0.0; };
    ego.acceleration = 1.5 * between(7, 13) - 1.0 * between(23, 27);
    ego.sideAcceleration = 0.875 * (between(7, 9) - between(9, 11) - between(18, 20) + between(20, 22));
    ego.speed += ego.acceleration * step;
    ego.sideSpeed += ego.sideAcceleration * step;
    ego.position += ego.speed * step;
    ego.lane += ego.sideSpeed * step;
}

struct RoadUser
{
    std::uint32_t id;
    std::uint8_t classification;
    IdcPoint box;
    float height;
    double position, lane, speed;
};

constexpr double sight = 100;
constexpr RoadUser roadUsers[] = {
    {11, 6, {12.0F, 2.5F}, 3.75F, 40, 0, 20}, // truck
    {12, 5, {4.5F, 1.75F}, 1.5F, 135, 0, 23}, // car
    {31, 15, {2.0F, 0.75F}, 1.5F, -160, 3.5, 31}, // motorbike
    {23, 5, {4.25F, 1.75F}, 1.5F, 700, 7, -25}, // oncoming car
    {42, 17, {1.75F, 0.5F}, 1.75F, 230, -2, 6}, // cyclist
    {57, 3, {0.5F, 0.5F}, 1.75F, 480, -4, -1.25}, // on foot
};

IdcMeasurementList measurements(const Ego& ego, double time, IdcTime stamp)
{
    // A metre along a meridian is 1.57e-7 rad. The road leads north-east.
    constexpr double step = 1.0 / 1099511627776.0;
    const auto angle = [](double start, double metres) { return start + std::floor(metres * 122000.0) * step; };
    IdcMeasurementList list;
    list.microseconds = static_cast<std::uint32_t>(time * 1e6 + 0.5);
    list.time = stamp;
    list.listName = "Vehicle";
    list.groupName = "Demo";
    list.measurements = {{1, static_cast<double>(coarse(ego.speed))}, {2, 0.0F}, {4, static_cast<double>(coarse(ego.sideAcceleration))},
        {6, static_cast<double>(coarse(ego.acceleration))}, {60, angle(0.8125, ego.position)}, {61, angle(0.125, ego.position)},
        {67, static_cast<double>(coarse(0.75 + ego.sideSpeed / 25))}};
    return list;
}

IdcObjectRecord object(const RoadUser& user, double time, const Ego& ego, int frame, IdcTime stamp)
{
    constexpr std::uint16_t rearCentre = 7, frontCentre = 5;
    const double ahead = user.position + user.speed * time - ego.position;
    const double left = user.lane - ego.lane;
    const bool isAhead = ahead > 0;
    const bool showsRear = isAhead == (user.speed > 0);
    // What is seen of it is the end that is nearer.
    const double nearEnd = ahead + (isAhead ? -0.5 : 0.5) * static_cast<double>(user.box[0]);
    IdcObjectRecord record;
    record.id = user.id;
    record.flags = 0x180;
    record.age = static_cast<std::uint32_t>(frame);
    record.lastMeasured = stamp;
    record.classification = user.classification;
    record.certainty = 90;
    record.box = user.box;
    record.boxSigma = {0.125F, 0.125F};
    record.course = user.speed > 0 ? 0.0F : 3.140625F;
    record.relativeVelocity = {coarse(user.speed - ego.speed), coarse(-ego.sideSpeed)};
    record.velocity = {coarse(user.speed), 0.0F};
    record.height = user.height;
    record.location = showsRear ? rearCentre : frontCentre;
    record.reference = {coarse(nearEnd), coarse(left)};
    record.motionReference = record.centreOfGravity = {coarse(ahead), coarse(left)};
    record.existence = 1.0F;
    record.contour = {{coarse(nearEnd), coarse(left - 0.5)}, {coarse(nearEnd), coarse(left + 0.5)}};
    return record;
}

} // namespace

std::string demoRecording()
{
    IdcWriter writer;
    Ego ego;
    std::uint32_t frameSize = 0;
    for (int frame = 0; frame <= frames; ++frame) {
        const double time = static_cast<double>(frame) / framesPerSecond;
        const IdcTime stamp = {startSeconds + static_cast<std::uint32_t>(frame / framesPerSecond),
            static_cast<std::uint32_t>(frame % framesPerSecond) * 429496730u};
        const std::size_t begin = writer.bytes().size();
        const IdcHeader header = {{}, {}, {}, 0, 1, stamp};
        drive(ego, time);
        writer.add(measurements(ego, time, stamp), header);
        IdcObjectList list;
        list.time = stamp;
        for (const RoadUser& user : roadUsers) {
            if (std::abs(user.position + user.speed * time - ego.position) < sight) {
                list.objects.push_back(object(user, time, ego, frame, stamp));
            }
        }
        writer.add(list, header);
        writer.block(IdcWriter::frameEnd, idcFrameEnd(static_cast<std::uint32_t>(frame), frameSize, 0, stamp), header);
        frameSize = static_cast<std::uint32_t>(writer.bytes().size() - begin);
    }
    writer.block(IdcWriter::trailer, "");
    return writer.take();
}

} // namespace brvTesting
