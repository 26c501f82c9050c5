#include "DataTable.h"

#include "Output.h"

#include <brvUtils/core/FileSystem.h>
#include <brvUtils/data/DataMatrixFactory.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <map>

namespace brvTool {

namespace {

/// What the reader of scanners' recordings wants to be told, time first.
const std::vector<std::string> scannerColumns = {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel", "EGO_longAccel",
    "EGO_latGPS", "EGO_longGPS", "EGO_GPSdirection"};

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// The one that comes most often in the first line.
char separatorOf(const std::string& file)
{
    std::ifstream stream(std::filesystem::u8path(file));
    std::string line;
    std::getline(stream, line);
    const auto count = [&](char separator) { return std::count(line.begin(), line.end(), separator); };
    const std::string candidates = ",;\t|";
    return *std::max_element(candidates.begin(), candidates.end(), [&](char left, char right) { return count(left) < count(right); });
}

} // namespace

std::unique_ptr<DataMatrix> loadData(const std::string& file, char separator)
{
    if (!brvUtils::fileExist(file, Utilities::Encoding::Mode::Utf8)) {
        throw Fault("there is no file " + file);
    }
    const bool isText = endsWith(file, ".csv");
    std::unique_ptr<DataMatrix> data(
        DataMatrixFactory::create(file, isText && separator == 0 ? separatorOf(file) : separator, CsvDataFile::FORCE_DOUBLE));
    if (data == nullptr) {
        throw Fault(file + " is no .csv, .mat or .idc file");
    }
    if (!data->load(file, endsWith(file, ".idc") ? scannerColumns : std::vector<std::string>())) {
        throw Fault(file + " cannot be read");
    }
    return data;
}

std::size_t columnOf(const DataMatrix& data, const std::string& name)
{
    for (std::size_t i = 0; i < data.getColmnCount(); ++i) {
        if (data.getDataName(i) == name) {
            return i;
        }
    }
    std::size_t number = 0;
    const auto [stop, failure] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (failure == std::errc() && stop == name.data() + name.size() && number > 0 && number <= data.getColmnCount()) {
        return number - 1;
    }
    throw Fault("there is no column \"" + name + "\"; brv data info lists them");
}

std::string typeOf(const DataMatrix::DataCol& column)
{
    return column.getDoubleData() != nullptr ? "number" : column.getIntData() != nullptr ? "integer" : column.getStringData() != nullptr ? "text" : "";
}

std::vector<double> numbersOf(const DataMatrix::DataCol& column)
{
    if (const double* const values = column.getDoubleData()) {
        return {values, values + column.size()};
    }
    if (const int* const values = column.getIntData()) {
        return {values, values + column.size()};
    }
    return {};
}

std::string unitOf(const std::string& name)
{
    for (const auto& [open, close] : {std::make_pair('[', ']'), std::make_pair('(', ')')}) {
        const std::size_t begin = name.rfind(open);
        if (!name.empty() && name.back() == close && begin != std::string::npos) {
            return name.substr(begin + 1, name.size() - begin - 2);
        }
    }
    static const std::map<std::string, std::string> known = {{"EGO_longSpeed", "km/h"}, {"EGO_latAccel", "m/s²"}, {"EGO_longAccel", "m/s²"},
        {"EGO_latGPS", "°"}, {"EGO_longGPS", "°"}, {"EGO_GPSdirection", "°"}};
    static const std::map<std::string, std::string> ofObjects = {{"_Length", "m"}, {"_Width", "m"}, {"_Height", "m"}, {"_LongPos", "m"},
        {"_LatPos", "m"}, {"_LongVel", "m/s"}, {"_LatVel", "m/s"}, {"_Direction", "rad"}, {"_RefPointX", "m"}, {"_RefPointY", "m"}};
    if (const auto found = known.find(name); found != known.end()) {
        return found->second;
    }
    const auto found = name.compare(0, 7, "OBJECT_") == 0 ? ofObjects.find(name.substr(std::min(name.size(), name.rfind('_')))) : ofObjects.end();
    return found != ofObjects.end() ? found->second : std::string();
}

} // namespace brvTool
