#pragma once

#include "brvUtils/data/IdcDataFile.h"
#include "testing/CapturedOutput.h"
#include "testing/IdcWriter.h"
#include "testing/TemporaryFolder.h"

#include <map>
#include <string>
#include <vector>

namespace idcTest {

using namespace brvTesting;

const std::vector<std::string> names = {"Time", "EGO_SwAngle", "EGO_SwRotSpeed", "EGO_longSpeed", "EGO_latAccel",
    "EGO_longAccel", "EGO_latGPS", "EGO_longGPS", "EGO_GPSdirection"};
const std::vector<std::string> objectSuffixes = {"_Unique_ID", "_Length", "_Width", "_Height", "_LongPos", "_LatPos", "_LongVel",
    "_LatVel", "_ObstacleClass", "_LongAccel", "_Direction", "_RefPointX", "_RefPointY"};

using Columns = std::map<std::string, std::vector<double>>;

/// The values of a table by the names of its columns.
inline Columns columnsOf(const DataMatrix& table)
{
    Columns columns;
    for (std::size_t i = 0; i < table.getColmnCount(); ++i) {
        const double* const values = table[i]->getDoubleData();
        columns[table.getDataName(i)] = values ? std::vector<double>(values, values + table[i]->size()) : std::vector<double>();
    }
    return columns;
}

/// What a recording is loaded as, and what is said meanwhile.
struct Loaded
{
    explicit Loaded(const std::string& bytes, const std::vector<std::string>& wanted = names)
    {
        const TemporaryFolder folder;
        const std::string file = folder.write("recording.idc", bytes);
        const CapturedOutput captured;
        result = table.load(file, wanted);
        columns = columnsOf(table);
        err = captured.err();
    }

    std::size_t objects() const { return (table.getColmnCount() - names.size()) / objectSuffixes.size(); }
    std::size_t rows() const { return table.getRowsCount(); }

    IdcDataFile table;
    bool result = false;
    Columns columns;
    std::string err;
};

/// A list with the six values that make a row.
inline IdcMeasurementList ego(double seconds, double speed = 1)
{
    IdcMeasurementList list;
    list.time = idcTime(seconds);
    list.measurements = {{1, speed}, {4, 2.0}, {6, 3.0}, {60, 0.5}, {61, 0.25}, {67, 1.0}};
    return list;
}

inline IdcObjectRecord object(std::uint32_t id, std::uint8_t classification = 5, float length = 4)
{
    IdcObjectRecord record;
    record.id = id;
    record.classification = classification;
    record.box = {length, 2.0F};
    return record;
}

inline IdcObjectList objects(std::vector<IdcObjectRecord> records)
{
    IdcObjectList list;
    list.objects = std::move(records);
    return list;
}


} // namespace idcTest
