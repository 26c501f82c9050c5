/// Tells what is in recordings: CSV, MAT and IDC files.
#include "Module.h"
#include "SceneCheck.h"

#include <brvUtils/data/DataMatrixFactory.h>
#include <brvUtils/platform/CrashDump.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace suite;

const char* const flags = "separator:string:,:Character between two fields of a CSV file;";

/// What the reader of IDC files wants to be told, time first.
const std::vector<std::string> egoColumns = {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel", "EGO_longAccel",
    "EGO_latGPS", "EGO_longGPS", "EGO_GPSdirection"};

/// Of the values that are finite.
struct Range
{
    std::size_t count = 0;
    double least = 0.0;
    double most = 0.0;
    double sum = 0.0;
};

template <typename Value>
Range rangeOf(const Value* values, std::size_t count)
{
    Range range;
    for (const Value* value = values; value != values + count; ++value) {
        const auto number = static_cast<double>(*value);
        if (std::isfinite(number)) {
            range.least = range.count == 0 ? number : std::min(range.least, number);
            range.most = range.count == 0 ? number : std::max(range.most, number);
            range.sum += number;
            ++range.count;
        }
    }
    return range;
}

std::optional<Range> rangeOf(const DataMatrix::DataCol& column)
{
    if (const double* doubles = column.getDoubleData()) {
        return rangeOf(doubles, column.size());
    }
    if (const int* integers = column.getIntData()) {
        return rangeOf(integers, column.size());
    }
    return std::nullopt;
}

/// The numbers of the first of these columns that is there.
std::optional<Range> rangeOf(const DataMatrix& table, std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        if (table.exists(name)) {
            return rangeOf(*table[name]);
        }
    }
    return std::nullopt;
}

void showColumn(const std::string& me, const DataMatrix::DataCol& column)
{
    const std::optional<Range> range = rangeOf(column);
    std::printf("%s:   %-26s %9zu", me.c_str(), column.name.c_str(), column.size());
    if (range && range->count > 0) {
        std::printf(" %14.7g %14.7g %14.7g\n", range->least, range->sum / static_cast<double>(range->count), range->most);
    } else {
        std::printf(" %14s\n", column.getStringData() != nullptr ? "text" : "-");
    }
}

void show(const std::string& me, const std::string& file, const DataMatrix& table)
{
    std::string text = std::to_string(table.getRowsCount()) + " rows, " + std::to_string(table.getColmnCount()) + " columns";
    if (const auto time = rangeOf(table, {"time s", "Time", "time"})) {
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, ", %.1f s", time->most - time->least);
        text += seconds;
    }
    if (const auto row = rangeOf(table, {"row"})) {
        const auto beats = row->count == 0 ? 0 : std::llround(row->most - row->least) + 1;
        text += ", missing rows: " + std::to_string(beats - static_cast<long long>(row->count));
    }
    tell(std::cout, me, file + ": " + text);
    std::printf("%s:   %-26s %9s %14s %14s %14s\n", me.c_str(), "column", "values", "least", "mean", "most");
    for (std::size_t column = 0; column < table.getColmnCount(); ++column) {
        showColumn(me, *table[column]);
    }
    std::fflush(stdout);
}

/// What a recording of the suite has of traffic and sensor; nothing for others.
void showScene(const std::string& me, const DataMatrix& table)
{
    const std::optional<SceneCheck> scene = checkScene(table);
    if (!scene) {
        return;
    }
    std::printf("%s: traffic: %.0f frames; the two vehicles that came closest were %.1f m apart\n", me.c_str(), scene->trafficFrames,
        scene->closest);
    std::printf("%s: sensor: told something in %zu rows, at most %d vehicles in view, ", me.c_str(), scene->rows, scene->mostInView);
    std::printf("off the positions in the world by at most %.3f mm\n", 1000.0 * scene->largestError);
    std::fflush(stdout);
}

bool summarize(const std::string& me, const std::string& file, char separator)
{
    const std::unique_ptr<DataMatrix> table(DataMatrixFactory::create(file, separator, CsvDataFile::FORCE_DOUBLE));
    if (table == nullptr) {
        complain(me, file + " is none of .csv, .mat and .idc");
        return false;
    }
    table->setProgress([](std::uint64_t, std::uint64_t) { return !StopRequest::received(); });
    const bool isIdc = std::filesystem::u8path(file).extension() == ".idc";
    if (!table->load(file, isIdc ? egoColumns : std::vector<std::string>())) {
        complain(me, StopRequest::received() ? "stopped" : file + " cannot be opened");
        return false;
    }
    show(me, file, *table);
    showScene(me, *table);
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    RegisterDump();
    StopRequest::listen();
    std::string me = "summary";
    try {
        std::string separator = ",";
        brvUtils::ArgParser arguments(argc, argv, me, flags);
        arguments.addStringHandler("separator", separator);
        const bool good = arguments.parse();
        me = arguments.getProcessName();
        if (!good || arguments.getRemainingArgs().empty() || separator.size() != 1) {
            complain(me, good ? "takes the recordings to tell of, and a separator of one character" : arguments.getErrorMessage());
            return 1;
        }
        bool all = true;
        for (const std::string& file : arguments.getRemainingArgs()) {
            all = summarize(me, utf8(file), separator.front()) && all;
        }
        return all ? 0 : 1;
    } catch (const std::exception& fault) {
        complain(me, fault.what());
        return 1;
    }
}
