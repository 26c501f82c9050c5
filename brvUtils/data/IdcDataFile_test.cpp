#include "brvUtils/data/IdcDataFile_test.h"

#include "testing/DemoRecording.h"

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace idcTest {
namespace {

using Values = std::vector<double>;

/// The bytes that pairs of digits stand for, of which any blanks are no part.
std::string fromHex(const std::string& text)
{
    std::string bytes;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        bytes += static_cast<char>(std::strtoul(word.c_str(), nullptr, 16));
    }
    return bytes;
}

const std::string measurementBlock = fromHex("af fe c0 c2 00 00 00 00 00 00 00 21 00 00 28 21 e2 7f 66 00 80 00 00 00 "
                                             "00 00 03 e8 e2 7f 66 00 80 00 00 00 41 00 42 00 00 02 00 01 02 40 29 00 00 00 00 00 00 00 46 04 07");
const std::string objectPayload = fromHex(
    "e2 7f 66 00 00 00 00 00 01 01 00 00 00 00 00 01 00 00 00 07 01 80 00 00 00 03 e2 7f 66 00 00 00 00 00 00 00 05 5a "
    "00 00 00 c8 40 90 00 00 3f e0 00 00 00 00 00 00 00 00 00 00 3f 00 00 00 00 00 00 00 3f 80 00 00 40 00 00 00 00 00 "
    "00 00 00 00 00 00 40 40 00 00 40 80 00 00 00 00 00 00 00 00 00 00 3f c0 00 00 00 00 00 00 41 20 00 00 c0 00 00 00 "
    "00 00 00 00 00 00 00 00 3e 80 00 00 00 00 00 00 3e 00 00 00 00 00 00 00 01 00 00 07 41 00 00 00 c0 00 00 00 00 00 "
    "00 00 00 00 00 00 00 00 00 00 41 20 00 00 c0 00 00 00 00 01 3f 80 00 00 05 00 00 00 40 f0 00 00 bf c0 00 00 00 00");

/// The object of those bytes.
IdcObjectRecord car()
{
    IdcObjectRecord record = object(7);
    record.flags = 0x180;
    record.age = 3;
    record.lastMeasured = {3800000000u, 0};
    record.certainty = 90;
    record.classificationAge = 200;
    record.box = {4.5F, 1.75F};
    record.course = 0.5F;
    record.relativeVelocity = {1, 2};
    record.velocity = {3, 4};
    record.height = 1.5F;
    record.motionReference = {10, -2};
    record.acceleration = 0.25F;
    record.yawRate = 0.125F;
    record.location = 7;
    record.reference = {8, -2};
    record.centreOfGravity = {10, -2};
    record.priority = 1;
    record.existence = 1;
    record.heightOffset = 5;
    record.contour = {{7.5F, -1.5F}};
    return record;
}

TEST(IdcDataFile, ReadsWhatTheFormatDefines)
{
    IdcWriter writer;
    IdcMeasurementList measurements;
    measurements.microseconds = 1000;
    measurements.time = {3800000000u, 0x80000000u};
    measurements.listName = "A";
    measurements.groupName = "B";
    measurements.measurements = {{1, 12.5}, {70, std::uint8_t{7}}};
    IdcHeader header;
    header.time = measurements.time;
    writer.add(measurements, header);
    EXPECT_EQ(writer.take(), measurementBlock);
    IdcObjectList list = objects({car()});
    list.time = {3800000000u, 0};
    list.id = 1;
    EXPECT_EQ(idcPayload(list), objectPayload);
    EXPECT_EQ(idcFrameEnd(5, 100, 0, {3800000000u, 0}),
        fromHex("00 00 00 05 00 00 00 64 00 00 00 00 e2 7f 66 00 00 00 00 00") + std::string(12, '\0'));

    writer.garbage(measurementBlock);
    writer.block(IdcWriter::objectList, objectPayload);
    const Loaded loaded(writer.bytes());
    EXPECT_TRUE(loaded.result);
    EXPECT_EQ(loaded.err, "");
    EXPECT_EQ(loaded.table.getFileName(), "");
    EXPECT_EQ(loaded.rows(), 0u) << "five of six values are missing";
    const Values expected = {7, 4.5, 1.75, 1.5, 8 + std::cos(0.5) * 2.25, -2 + std::sin(0.5) * 2.25, 3, 4, 1, 0, 0.5, 8, -2};
    ASSERT_EQ(loaded.objects(), 1u);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(loaded.table.getDataName(9 + i), "OBJECT_0001" + objectSuffixes[i]);
        double value = 0;
        EXPECT_TRUE(loaded.table.getData(9 + i, 0, value));
        EXPECT_DOUBLE_EQ(value, expected[i]) << objectSuffixes[i];
    }
}

TEST(IdcDataFile, ConvertsTheValuesOfTheEgoVehicle)
{
    IdcWriter writer;
    writer.add(ego(3800000000.0));
    IdcMeasurementList second = ego(0);
    second.time = {3800000001u, 0xFFFFFFFFu};
    second.measurements = {{67, -0.5}, {61, 1.0F}, {2, 9.0}, {60, std::int8_t{-1}}, {6, true}, {4, std::uint64_t{5}}, {1, std::int16_t{-10}}};
    writer.add(second);
    const Loaded loaded(writer.bytes());
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(loaded.table.getDataName(i), names[i]);
    }
    constexpr double degree = 180.0 / 3.14159265358979323846;
    const std::map<std::string, Values> expected = {{"EGO_SwAngle", {0, 0}}, {"EGO_SwRotSpeed", {0, 0}},
        {"EGO_longSpeed", {3.6, -36}}, {"EGO_latAccel", {2, 5}}, {"EGO_longAccel", {3, 1}},
        {"EGO_latGPS", {0.5 * degree, -degree}}, {"EGO_longGPS", {0.25 * degree, degree}}, {"EGO_GPSdirection", {-degree, 0.5 * degree}}};
    for (const auto& [name, values] : expected) {
        ASSERT_EQ(loaded.columns.at(name).size(), 2u) << name;
        EXPECT_DOUBLE_EQ(loaded.columns.at(name)[0], values[0]) << name;
        EXPECT_DOUBLE_EQ(loaded.columns.at(name)[1], values[1]) << name;
    }
    // 0xFFFFFFFF of those units are 999992 whole "microseconds".
    EXPECT_EQ(loaded.columns.at("Time"), (Values{0, 3800000001.0 + 999992 * 1e-6 - 3800000000.0}));
}

TEST(IdcDataFile, TakesNumbersOfAnyTypeAndNothingElse)
{
    const std::pair<IdcValue, double> numbers[] = {{1.5F, 1.5}, {-2.5, -2.5}, {std::int8_t{-3}, -3}, {std::uint8_t{200}, 200},
        {std::int16_t{-300}, -300}, {std::uint16_t{60000}, 60000}, {std::int32_t{-70000}, -70000}, {std::uint32_t{4000000000u}, 4e9},
        {std::int64_t{-5000000000}, -5e9}, {std::uint64_t{1} << 63, 9223372036854775808.0}, {true, 1}, {false, 0}};
    IdcWriter writer;
    Values expected;
    for (const auto& [value, number] : numbers) {
        IdcMeasurementList list = ego(static_cast<double>(expected.size()));
        list.measurements[1].value = value;
        writer.add(list);
        expected.push_back(number);
    }
    for (const IdcValue& value : {IdcValue(), IdcValue(std::string("5"))}) {
        IdcMeasurementList list = ego(100);
        list.measurements[1].value = value;
        writer.add(list);
    }
    IdcMeasurementList list = ego(101);
    list.measurements.insert(list.measurements.begin() + 3, {{300, std::string(1000, 's')}, {4, std::string("no number")}, {301, {}}});
    writer.add(list);
    expected.push_back(2);
    EXPECT_EQ(Loaded(writer.bytes()).columns.at("EGO_latAccel"), expected);
}

TEST(IdcDataFile, MakesARowOfSixValuesAtANewTime)
{
    IdcWriter writer;
    IdcMeasurementList lacking = ego(10);
    lacking.measurements.pop_back();
    writer.add(lacking); // no row, but the clock starts
    writer.add(ego(9)); // the time "-1" before any row
    writer.add(ego(12, 1));
    writer.add(ego(12, 2));
    IdcMeasurementList seven = ego(13, 3);
    seven.measurements.push_back({1, 4.0});
    writer.add(seven);
    IdcMeasurementList replaced = ego(14, 5);
    replaced.measurements[1] = {1, 6.0}; // instead of key 4, which is filled in later
    writer.add(replaced);
    writer.add(ego(15, 7));
    writer.add(ego(12, 8));
    const Loaded loaded(writer.bytes());
    EXPECT_EQ(loaded.columns.at("Time"), (Values{2, 4, 5, 2}));
    const Values speeds = {3.6, 6 * 3.6, 7 * 3.6, 8 * 3.6};
    EXPECT_EQ(loaded.columns.at("EGO_longSpeed"), speeds);
    EXPECT_EQ(loaded.columns.at("EGO_latAccel"), (Values{2, 2, 2, 2}));
    EXPECT_EQ(loaded.columns.at("EGO_GPSdirection").size(), 4u);
}

TEST(IdcDataFile, GivesItsColumnsTheWantedNames)
{
    IdcWriter writer;
    writer.add(ego(1));
    writer.add(ego(2));
    writer.add(objects({object(1)}));
    EXPECT_FALSE(Loaded(writer.bytes(), {"Time"}).result);
    EXPECT_EQ(Loaded(writer.bytes(), {names.begin(), names.end() - 1}).table.getColmnCount(), 0u);

    std::vector<std::string> other = {names.rbegin(), names.rend()};
    other[7] = "mine";
    other.push_back("EGO_SwAngle");
    const Loaded loaded(writer.bytes(), other);
    EXPECT_TRUE(loaded.result);
    ASSERT_EQ(loaded.table.getColmnCount(), 22u);
    EXPECT_EQ(loaded.table.getDataName(8), "Time");
    EXPECT_EQ(loaded.columns.at("Time"), (Values{0, 1}));
    EXPECT_EQ(loaded.columns.at("mine"), Values());
    EXPECT_EQ(loaded.columns.count("EGO_SwAngle"), 0u);

    IdcDataFile missing;
    const TemporaryFolder folder;
    EXPECT_FALSE(missing.load(folder.file("none.idc"), names));
    EXPECT_EQ(missing.getColmnCount(), 9u);
    EXPECT_FALSE(IdcDataFile().load(folder.file(), names)) << "a folder";
}

TEST(IdcDataFile, NumbersObjectsAsTheyComeAndLeavesOutWhatHasNoClass)
{
    IdcWriter writer;
    writer.add(objects({object(500), object(3, 2), object(0xFFFFFFFFu), object(500, 6, 9.0F)}));
    // What is left out has not been handled: the same number may follow as something else.
    writer.add(objects({object(9, 0), object(9, 3), object(9, 4), object(500)}));
    const Loaded loaded(writer.bytes());
    ASSERT_EQ(loaded.objects(), 3u);
    EXPECT_EQ(loaded.columns.at("OBJECT_0001_Unique_ID"), (Values{500, 500}));
    EXPECT_EQ(loaded.columns.at("OBJECT_0001_Length"), (Values{4, 4}));
    EXPECT_EQ(loaded.columns.at("OBJECT_0002_Unique_ID"), Values{-1});
    EXPECT_EQ(loaded.columns.at("OBJECT_0003_Unique_ID"), Values{9});
    EXPECT_EQ(loaded.columns.at("OBJECT_0003_ObstacleClass"), Values{4});
    EXPECT_EQ(loaded.rows(), 0u);
}

TEST(IdcDataFile, CountsObjectsBeyondFourDigits)
{
    IdcWriter writer;
    for (std::uint32_t id = 0; id < 10001; ++id) {
        writer.add(objects({object(id)}));
    }
    const Loaded loaded(writer.bytes());
    EXPECT_EQ(loaded.columns.at("OBJECT_9999_Unique_ID"), Values{9998});
    EXPECT_EQ(loaded.columns.at("OBJECT_10001_Unique_ID"), Values{10000});
}

TEST(IdcDataFile, MapsClasses)
{
    const std::map<unsigned, double> known = {{3, 4}, {4, 9}, {17, 9}, {5, 1}, {6, 3}, {12, 5}, {15, 2}};
    IdcWriter writer;
    Values expected;
    for (unsigned classification = 3; classification < 256; ++classification) {
        writer.add(objects({object(1, static_cast<std::uint8_t>(classification))}));
        const auto found = known.find(classification);
        expected.push_back(found == known.end() ? 10 : found->second);
    }
    EXPECT_EQ(Loaded(writer.bytes()).columns.at("OBJECT_0001_ObstacleClass"), expected);
}

TEST(IdcDataFile, FindsTheCentreFromTheReferencePoint)
{
    // At a course of 90 degrees the front is to the left. The box is 4 by 2.
    const std::pair<std::uint16_t, std::pair<double, double>> centres[] = {{0, {10, 20}}, {1, {11, 18}}, {2, {9, 18}}, {3, {9, 22}},
        {4, {11, 22}}, {5, {10, 18}}, {6, {9, 20}}, {7, {10, 22}}, {8, {11, 20}}, {9, {10, 20}}, {65535, {10, 20}}};
    for (const auto& [location, centre] : centres) {
        IdcObjectRecord record = object(1);
        record.location = location;
        record.course = 1.57079637F;
        record.reference = {10, 20};
        IdcWriter writer;
        writer.add(objects({record}));
        const Loaded loaded(writer.bytes());
        EXPECT_NEAR(loaded.columns.at("OBJECT_0001_LongPos").at(0), centre.first, 1e-6) << location;
        EXPECT_NEAR(loaded.columns.at("OBJECT_0001_LatPos").at(0), centre.second, 1e-6) << location;
        EXPECT_EQ(loaded.columns.at("OBJECT_0001_RefPointY").at(0), 20) << location;
    }
}

TEST(IdcDataFile, TellsOfItsProgressAndKeepsWhatItHasWhenStopped)
{
    IdcWriter writer;
    std::uint64_t bytes = 0;
    for (int i = 0; i < 24; ++i) {
        writer.add(objects({object(1)}));
        writer.add(ego(i));
        writer.add(ego(i + 0.5));
        writer.block(IdcWriter::image, std::string(1 << 20, 'i'));
    }
    writer.garbage(std::string(6 << 20, 'g'));
    bytes = writer.bytes().size();
    const TemporaryFolder folder;
    const std::string file = folder.write("f", writer.take());

    IdcDataFile table;
    std::vector<std::uint64_t> steps;
    const auto note = [&](std::uint64_t done, std::uint64_t total) {
        EXPECT_EQ(total, bytes);
        EXPECT_GE(done, steps.empty() ? 0 : steps.back());
        steps.push_back(done);
        return true;
    };
    table.setProgress(note);
    CapturedOutput captured;
    EXPECT_TRUE(table.load(file, names));
    EXPECT_EQ(captured.err(), std::to_string(6 << 20) + " Bytes skipped\n");
    EXPECT_GE(steps.size(), 6u);
    EXPECT_EQ(steps.back(), bytes);
    EXPECT_EQ(table.getRowsCount(), 48u);

    IdcDataFile stopped;
    stopped.setProgress([](std::uint64_t, std::uint64_t) { return false; });
    EXPECT_FALSE(stopped.load(file, names));
    EXPECT_GT(stopped.getRowsCount(), 0u);
    EXPECT_LT(stopped.getRowsCount(), 48u);
    EXPECT_EQ(stopped["OBJECT_0001_Width"]->size(), stopped.getRowsCount());

    stopped.setProgress(nullptr);
    EXPECT_FALSE(stopped.load(file, {}));
    EXPECT_GT(stopped.getRowsCount(), 0u) << "nothing was loaded";
    EXPECT_TRUE(stopped.load(file, names));
    EXPECT_EQ(columnsOf(stopped), columnsOf(table)) << "nothing is left of what came before";
    EXPECT_EQ(stopped.getColmnCount(), table.getColmnCount());

    IdcDataFile thrown;
    thrown.setProgress([](std::uint64_t, std::uint64_t) -> bool { throw std::string("stop"); });
    EXPECT_THROW(thrown.load(file, names), std::string);
}

TEST(DemoRecording, IsWhatItsProgramMakes)
{
    std::ifstream file(DEMO_RECORDING, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_TRUE(bytes == demoRecording()) << DEMO_RECORDING << " has to be written anew by make_demo_recording";

    const Loaded loaded(bytes);
    EXPECT_EQ(loaded.err, "");
    EXPECT_EQ(loaded.rows(), 301u);
    EXPECT_EQ(loaded.objects(), 6u);
    EXPECT_NEAR(loaded.columns.at("Time").back(), 30.0, 1e-6);
    EXPECT_GT(loaded.columns.at("OBJECT_0001_LongPos").front(), 30.0) << "the truck is ahead";
    EXPECT_LT(loaded.columns.at("OBJECT_0001_LongPos").back(), -30.0) << "and behind in the end";
}

} // namespace
} // namespace idcTest
