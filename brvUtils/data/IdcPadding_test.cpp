#include "brvUtils/data/IdcDataFile_test.h"

#include <gtest/gtest.h>
#include <random>
#include <set>

namespace idcTest {
namespace {

using Values = std::vector<double>;

/// The table by the plainest means: whenever a row of the ego vehicle comes, each column is looked at. Of an object only
/// number and length matter here, of the ego vehicle time and speed.
class PlainTable
{
public:
    PlainTable()
    {
        for (const std::string& name : names) {
            columns[name];
        }
    }

    void row(double time, double speed, bool withAcceleration)
    {
        pad();
        for (const std::string& name : names) {
            if (withAcceleration || name != "EGO_latAccel") {
                columns[name].push_back(name == "Time" ? time : name == "EGO_longSpeed" ? speed * 3.6 : 0);
            }
        }
    }
    void list(const std::vector<std::pair<std::uint32_t, float>>& seen)
    {
        std::set<std::uint32_t> handled;
        for (const auto& [id, length] : seen) {
            if (!handled.insert(id).second) {
                continue;
            }
            const auto number = numbers_.emplace(id, numbers_.size() + 1).first->second;
            const std::string prefix = "OBJECT_000" + std::to_string(number);
            for (const std::string& suffix : objectSuffixes) {
                columns[prefix + suffix].push_back(suffix == "_Unique_ID" ? id : suffix == "_Length" ? static_cast<double>(length)
                        : suffix == "_ObstacleClass"                               ? 1
                                                                                   : 0);
            }
        }
    }
    void pad()
    {
        const std::size_t length = columns["Time"].size();
        for (auto& [name, values] : columns) {
            while (!values.empty() && values.size() < length) {
                values.push_back(values.back());
            }
        }
    }

    Columns columns;

private:
    std::map<std::uint32_t, std::size_t> numbers_;
};

IdcMeasurementList egoList(double time, double speed, bool withAcceleration)
{
    IdcMeasurementList list;
    list.time = idcTime(1000 + time);
    list.measurements = {{1, 0.0}, {4, 0.0}, {6, 0.0}, {60, 0.0}, {61, 0.0}, {67, -0.0}};
    if (!withAcceleration) {
        list.measurements[1].key = 1;
    }
    for (IdcMeasurement& measurement : list.measurements) {
        measurement.value = measurement.key == 1 ? speed : 0.0;
    }
    return list;
}

TEST(IdcPadding, IsThatOfPaddingAllColumnsEachTime)
{
    std::mt19937 random(3);
    for (int recording = 0; recording < 150; ++recording) {
        IdcWriter writer;
        PlainTable plain;
        const unsigned rows = random() % 5; // how many of these come for an object list
        const unsigned ids = 1 + random() % 9;
        double time = 0;
        writer.add(egoList(0, 1, true));
        if (recording % 3 == 0) {
            writer.take();
            time = -1; // object lists come first
        } else {
            plain.row(0, 1, true);
        }
        for (unsigned left = random() % 60; left > 0; --left) {
            if (random() % 5 < rows) {
                const double speed = random() % 100;
                const bool whole = random() % 4 != 0;
                time += 1;
                writer.add(egoList(time, speed, whole));
                plain.row(time, speed, whole);
            } else {
                IdcObjectList list;
                std::vector<std::pair<std::uint32_t, float>> seen;
                for (unsigned i = random() % 4; i > 0; --i) {
                    seen.emplace_back(random() % ids, static_cast<float>(random() % 100));
                    list.objects.push_back(object(seen.back().first, 5, seen.back().second));
                    list.objects.back().box[1] = 0;
                }
                writer.add(list);
                plain.list(seen);
            }
        }
        plain.pad();
        const Loaded loaded(writer.bytes());
        ASSERT_TRUE(loaded.result);
        ASSERT_EQ(loaded.columns, plain.columns) << recording;
    }
}

} // namespace
} // namespace idcTest
