#include "brvUtils/data/internal/IdcListener.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::array<const char*, 9> egoNames = {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel",
    "EGO_longAccel", "EGO_latGPS", "EGO_longGPS", "EGO_GPSdirection"};
constexpr std::size_t ownNames = 3; // the further ones are those of the values of IdcEgo

constexpr std::array<const char*, 13> objectNames = {"_Unique_ID", "_Length", "_Width", "_Height", "_LongPos", "_LatPos",
    "_LongVel", "_LatVel", "_ObstacleClass", "_LongAccel", "_Direction", "_RefPointX", "_RefPointY"};

constexpr double pi = 3.14159265358979323846;

double kilometresPerHour(double speed)
{
    return speed * 3.6;
}

double degrees(double angle)
{
    return angle * 180.0 / pi;
}

double obstacleClass(unsigned classification)
{
    switch (classification) {
    case 3: return 4.0; // pedestrian
    case 4: // bike
    case 17: return 9.0; // bicycle
    case 5: return 1.0; // car
    case 6: return 3.0; // truck
    case 12: return 5.0; // under-drivable
    case 15: return 2.0; // motorbike
    default: return 10.0;
    }
}

} // namespace

IdcDataFile::Listener::Listener(IdcDataFile& table, const std::vector<std::string>& names)
    : table_(table)
{
    for (std::size_t i = 0; i < egoNames.size(); ++i) {
        Values& values = table_.append<double>(names[i]).values;
        first_ = i == 0 ? &values : first_;
        const auto known = std::find(egoNames.begin(), egoNames.end(), names[i]);
        if (known != egoNames.end()) {
            ego_[static_cast<std::size_t>(known - egoNames.begin())] = &values;
        }
    }
}

void IdcDataFile::Listener::onMeasurements(const brvUtils::IdcEgo& ego)
{
    startTime_ = startTime_ < 0 ? ego.time : startTime_;
    const double time = ego.time - startTime_;
    if (ego.count != brvUtils::IdcEgo::valueCount || time == (first_->empty() ? -1.0 : first_->back())) {
        return;
    }
    startRound();
    const auto& values = ego.values;
    const std::array<double, egoNames.size()> row = {time, 0.0, 0.0, kilometresPerHour(values[0]), values[1], values[2],
        degrees(values[3]), degrees(values[4]), -degrees(values[5])};
    for (std::size_t i = 0; i < row.size(); ++i) {
        // A key that came twice can stand for one that is missing: its column is filled later.
        if (ego_[i] != nullptr && (i < ownNames || ego.present[i - ownNames])) {
            ego_[i]->push_back(row[i]);
        }
    }
}

void IdcDataFile::Listener::onObjects(const std::vector<brvUtils::IdcObject>& objects)
{
    constexpr unsigned firstTaken = 3; // those before are not classified
    ++list_;
    for (const brvUtils::IdcObject& from : objects) {
        if (from.classification < firstTaken) {
            continue;
        }
        Object& object = objectOf(from.id);
        if (object.list == list_) {
            continue;
        }
        object.list = list_;
        const bool behind = object.round != round_;
        object.round = round_;
        const std::array<double, objectNames.size()> row = {static_cast<double>(from.id), from.length, from.width,
            from.height, from.x, from.y, from.xSpeed, from.ySpeed, obstacleClass(from.classification), 0.0, from.course,
            from.xReference, from.yReference};
        for (std::size_t i = 0; i < row.size(); ++i) {
            if (behind) {
                fill(*object.values[i]);
            }
            object.values[i]->push_back(row[i]);
        }
    }
}

void IdcDataFile::Listener::finish()
{
    startRound();
    for (auto& [id, object] : objects_) {
        for (Values* values : object.values) {
            fill(*values);
        }
    }
}

IdcDataFile::Listener::Object& IdcDataFile::Listener::objectOf(std::int32_t id)
{
    const auto [place, isNew] = objects_.try_emplace(id);
    if (isNew) {
        makeColumns(place->second, id);
    }
    return place->second;
}

void IdcDataFile::Listener::makeColumns(Object& object, std::int32_t id)
{
    const std::int32_t number = ++table_.objectCount;
    table_.objectNumbers[id] = number;
    char prefix[32];
    std::snprintf(prefix, sizeof prefix, "OBJECT_%04d", static_cast<int>(number));
    for (std::size_t i = 0; i < objectNames.size(); ++i) {
        object.values[i] = &table_.append<double>(std::string(prefix) + objectNames[i]).values;
    }
    object.round = round_; // there is nothing to fill yet
}

/// From now on the columns have to be as long as the first one. Those of the ego vehicle are filled at once.
void IdcDataFile::Listener::startRound()
{
    ++round_;
    length_ = first_->size();
    for (Values* values : ego_) {
        if (values != nullptr) {
            fill(*values);
        }
    }
}

void IdcDataFile::Listener::fill(Values& values) const
{
    if (!values.empty() && values.size() < length_) {
        const double last = values.back();
        values.resize(length_, last);
    }
}
