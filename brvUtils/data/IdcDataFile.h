#pragma once

#include "brvUtils/data/DataMatrix.h"

/// A recording of a laser-scanner system (IDC): columns of the ego vehicle, and thirteen of each object that was seen.
///
/// All columns hold doubles. The ego columns are "Time" (seconds from the first measurement list), "EGO_SwAngle" and
/// "EGO_SwRotSpeed" (0), "EGO_longSpeed" (km/h), "EGO_latAccel" and "EGO_longAccel" (m/s²), "EGO_latGPS" and "EGO_longGPS"
/// (degrees), "EGO_GPSdirection" (degrees, clockwise).
///
/// Objects are numbered from 1 in the order in which they are first seen; the columns of number 7 start with "OBJECT_0007":
/// "_Unique_ID", "_Length", "_Width", "_Height", "_LongPos", "_LatPos" (of the centre, m), "_LongVel", "_LatVel" (over
/// ground, m/s), "_ObstacleClass" (1 car, 2 motorbike, 3 truck, 4 pedestrian, 5 under-drivable, 9 bicycle, 10 other),
/// "_LongAccel" (0), "_Direction" (rad), "_RefPointX", "_RefPointY" (m). Objects of classes 0 to 2 are left out.
///
/// Before each ego row, and at the end, columns that are shorter than the first one are filled with their last value;
/// objects and ego are aligned by that alone. A column without any value stays empty.
class BRVUTILS_API IdcDataFile : public DataMatrix
{
public:
    /// Bytes that are no part of the recording are passed over, with a line on the error stream; so are, without it, records
    /// that are shorter than they say. What a cut file holds before the cut is kept.
    ///
    /// What the scanners recorded is small beside the table when many objects were seen: each has thirteen columns as long as
    /// the first one. Where there is no memory for it std::bad_alloc is thrown.
    /// \param path UTF-8; not recorded as the table's name: kept for callers.
    /// \param wantedColumns the nine names of the ego columns, "Time" first, in the order in which they are wanted.
    /// \return false when there are fewer names, when the file cannot be opened, or when the progress function stopped the
    ///         loading.
    bool load(std::string const& path, std::vector<std::string> const& wantedColumns) override;

private:
    class Listener;

    std::map<int32_t, int32_t> objectNumbers; ///< By identifier.
    int32_t objectCount = 0; ///< The last number that was given.
};
