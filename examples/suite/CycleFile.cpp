#include "CycleFile.h"

#include "LabelReader.h"

#include <brvUtils/core/Errors.h>

#include <cmath>
#include <fstream>
#include <optional>
#include <utility>

namespace suite {

namespace {

constexpr double kilometresPerHour = 1.0 / 3.6;

constexpr double timeRounding = 1e-6; // s, of sums of decimal fractions

// How far the published, rounded figures may be from what the speeds give.
constexpr double accelerationRounding = 0.02; // m/s2
constexpr double distanceRounding = 0.01; // of the distance

double speed(LabelReader& reader, const char* label)
{
    const double value = reader.number(label);
    if (value < 0.0) {
        reader.fail("a speed is negative");
    }
    return value * kilometresPerHour;
}

/// The table says much twice: each operation is checked against itself and against where the one before it ended.
Operation readOperation(LabelReader& reader, std::size_t number, double startSpeed, double startTime)
{
    reader.expect("{");
    if (reader.number("Number") != static_cast<double>(number)) {
        reader.fail("operation " + std::to_string(number) + " expected");
    }
    reader.whole("Phase", 1, 1000);
    Operation operation;
    operation.kind = reader.word("Kind");
    std::optional<double> acceleration;
    if (reader.found("Acceleration")) {
        acceleration = reader.value("Acceleration");
    }
    operation.from = speed(reader, "From");
    if (operation.from != startSpeed) {
        reader.fail("the speed jumps between two operations");
    }
    operation.to = speed(reader, "To");
    operation.duration = reader.number("Duration");
    if (operation.duration <= 0.0) {
        reader.fail("the duration must be positive");
    }
    if (acceleration
        && std::abs((operation.to - operation.from) / operation.duration - *acceleration) > accelerationRounding) {
        reader.fail("the acceleration is not what speeds and duration give");
    }
    if (std::abs(reader.number("Until") - (startTime + operation.duration)) > timeRounding) {
        reader.fail("the durations so far do not add up to this time");
    }
    operation.gear = reader.whole("Gear", 0, 20);
    reader.expect("}");
    return operation;
}

} // namespace

DrivingCycle loadCycle(const std::filesystem::path& place)
{
    const std::filesystem::path file = std::filesystem::is_directory(place) ? place / "ece15.txt" : place;
    std::ifstream stream(file);
    if (!stream) {
        throw brvUtils::FileError("the driving cycle " + file.u8string() + " cannot be opened");
    }
    return readCycle(stream, file.u8string());
}

DrivingCycle readCycle(std::istream& stream, const std::string& fileName)
{
    LabelReader reader(stream, fileName);
    reader.expect("Cycle");
    reader.expect("{");
    const std::string name = reader.word("Name");
    if (reader.found("Note")) {
        reader.expect("{");
        reader.skipSection();
    }
    const double duration = reader.number("Duration");
    const double distance = reader.number("Distance");

    std::vector<Operation> operations;
    double time = 0.0;
    reader.expect("Operations");
    reader.expect("{");
    while (reader.found("Operation")) {
        operations.push_back(readOperation(reader, operations.size() + 1, operations.empty() ? 0.0 : operations.back().to, time));
        time += operations.back().duration;
    }
    reader.expect("}");
    if (operations.empty() || std::abs(time - duration) > timeRounding) {
        reader.fail("the operations do not last as long as the cycle");
    }
    if (operations.back().to != 0.0) {
        reader.fail("the cycle does not end at a standstill, as it starts");
    }
    DrivingCycle cycle(name, distance, std::move(operations));
    if (std::abs(cycle.distance() - distance) > distanceRounding * distance) {
        reader.fail("the speeds do not give the distance of the cycle");
    }
    reader.expect("}");
    return cycle;
}

} // namespace suite
