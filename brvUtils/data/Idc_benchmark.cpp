// Recordings of scanners, in seconds per GB of recording: loading them, beside walking their headers only and, as the limit,
// reading the bare file. Few distinct objects show how loading grows with the length of the recording, few rows how it grows
// with the number of objects.

#include "brvUtils/data/Data_benchmark.h"
#include "brvUtils/data/IdcDataFile.h"
#include "brvUtils/data/internal/IdcBlocks.h"
#include "testing/IdcWriter.h"
#include "testing/Interleaved.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace dataBenchmark {

namespace {

using namespace brvTesting;

constexpr std::size_t window = 256 * 1024;

struct Shape
{
    unsigned lists; ///< Of objects, with one of measurements before every so many.
    unsigned objectsPerList;
    unsigned distinct; ///< How many objects there are, which take turns.
    unsigned listsPerRow;
};

/// Writes a recording and gives its size in bytes.
double write(const std::string& file, const Shape& shape)
{
    std::ofstream stream(file, std::ios::binary);
    std::minstd_rand random(1);
    const auto number = [&random] { return static_cast<float>(random() % 10000) / 64.0F; };
    IdcWriter writer;
    unsigned next = 0;
    for (unsigned i = 0; i < shape.lists; ++i) {
        if (i % shape.listsPerRow == 0) {
            IdcMeasurementList ego;
            ego.time = idcTime(1000 + i * 0.04);
            ego.measurements = {{1, 20.0}, {2, 0.0}, {4, 0.5}, {6, 0.25}, {60, 0.85}, {61, 0.04}, {67, 1.5}};
            writer.add(ego);
        }
        IdcObjectList list;
        list.objects.resize(shape.objectsPerList);
        for (IdcObjectRecord& object : list.objects) {
            object.id = next++ % shape.distinct;
            object.box = {number(), number()};
            object.course = number();
            object.velocity = {number(), number()};
            object.height = number();
            object.location = static_cast<std::uint16_t>(random() % 9);
            object.reference = {number(), number()};
        }
        writer.add(list);
        stream << writer.take();
    }
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + file);
    }
    return static_cast<double>(stream.tellp());
}

void load(const std::string& file)
{
    IdcDataFile table;
    if (!table.load(file, {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel", "EGO_longAccel", "EGO_latGPS",
                        "EGO_longGPS", "EGO_GPSdirection"})) {
        throw std::runtime_error("cannot load " + file);
    }
}

void walk(const std::string& file)
{
    brvUtils::os::InputFile input;
    input.open(file);
    brvUtils::IdcBlocks blocks(input, window);
    while (blocks.next() != brvUtils::IdcBlocks::Found::end) {
    }
}

void readBare(const std::string& file)
{
    brvUtils::os::InputFile input;
    input.open(file);
    std::vector<char> buffer(window);
    std::uint64_t at = 0;
    for (std::size_t got = 1; got > 0; at += got) {
        input.read(at, buffer.data(), buffer.size(), got);
    }
}

Contender contender(const char* name, void (*work)(const std::string&), const std::string& file)
{
    return {name, [work, file](std::uint64_t iterations) {
                return nanosecondsOf([&] {
                    for (; iterations > 0; --iterations) {
                        work(file);
                    }
                });
            }};
}

BenchmarkRow row(const std::string& name, const Settings& settings, const Shape& shape)
{
    const std::string file = settings.folder + "/recording.idc";
    const double bytes = write(file, shape);
    const std::vector<double> times = medianPerIteration(
        {contender("ours", load, file), contender("headers", walk, file), contender("read", readBare, file)},
        {5, std::chrono::milliseconds(100)});
    std::filesystem::remove(std::filesystem::u8path(file));
    // Nanoseconds per byte are seconds per GB.
    return {"IDC, " + name, "s/GB", times[0] / bytes, {{"headers only", times[1] / bytes}}, times[2] / bytes};
}

} // namespace

void addIdcRows(BenchmarkTable& table, const Settings& settings)
{
    const unsigned lists = static_cast<unsigned>(std::max<std::size_t>(settings.rows / 10, 1));
    table.add(row(std::to_string(lists) + " lists of 20 objects", settings, {lists, 20, 20, 1}));
    for (const unsigned megabytes : {1u, 10u, 100u, 1000u}) {
        constexpr unsigned listsPerMegabyte = 288;
        if (megabytes <= settings.rows / 1000) {
            table.add(row(std::to_string(megabytes) + " MB", settings, {megabytes * listsPerMegabyte, 20, 20, 1}));
        }
    }
    for (const unsigned distinct : {100u, 1000u, 10000u}) {
        table.add(row(std::to_string(distinct) + " objects in 10 lists each", settings, {distinct / 2, 20, distinct, distinct / 40}));
    }
}

} // namespace dataBenchmark
