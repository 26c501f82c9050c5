#pragma once

#include "CsvWriter.h"
#include "SensorView.h"
#include "VehicleState.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace suite {

/// The drive of a vehicle as a text table: a row at each beat of the recorder, with what the vehicle tells at that moment.
///
/// Columns, with their units in their names: number of the beat since the recording began ("row"; where some are missing
/// nothing was recorded), seconds since then, the same moment on the clock that all modules share, the vehicle's frame, its
/// own time, distance, speed, that of the cycle, acceleration, force and gear, and how long ago it told so. Behind these stands
/// what the sensor told last: when, the poses of ego, sensor and traffic in the world that it has looked at, and the traffic
/// in its own frame; all 0 as long as it has told nothing. A file that holds such a recording is gone on with. One thread at
/// a time.
class Recording
{
public:
    /// \param period of the recorder, in seconds. \throw brvUtils::FileError as CsvWriter.
    Recording(const std::filesystem::path& file, double period);

    /// Appends a row. \param now see clockNow; the rows' order.
    void add(const VehicleState& state, const SensorView& view, std::int64_t now);

    /// The name of a column of the vehicle with that number, from 0: "traffic 1 x m".
    static std::string trafficColumn(int vehicle, const std::string& name);

    /// Rows appended by this object.
    std::int64_t rows() const { return rows_; }

    /// Behind which row of an earlier recorder it goes on; -1: the recording is new.
    std::int64_t before() const;

    CsvWriter& writer() { return writer_; }

private:
    void begin(double clock);

    CsvWriter writer_;
    const double period_;
    double firstClock_ = 0.0; ///< Of this object's first row, seconds.
    double origin_ = 0.0; ///< When the recording began, on that clock.
    std::int64_t firstRow_ = 0;
    std::int64_t row_ = -1; ///< The last one.
    std::int64_t rows_ = 0;
};

} // namespace suite
