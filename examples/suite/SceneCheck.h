#pragma once

#include <brvUtils/data/DataMatrix.h>

#include <cstddef>
#include <optional>

namespace suite {

/// What a recording has of traffic and sensor, looked at again by geometry of the plane and of space.
struct SceneCheck
{
    std::size_t rows = 0; ///< In which the sensor has told something.
    int mostInView = 0; ///< Vehicles at once.
    double trafficFrames = 0.0; ///< That the traffic has done from the first of these rows to the last.
    double closest = 0.0; ///< Of two vehicles' middle lines in any row, the ego's included, m.
    double largestError = 0.0; ///< What the sensor gives of a vehicle against the two poses in the world, m.
};

/// Nothing when the table has no such columns, or no such rows. They are those of Recording.
std::optional<SceneCheck> checkScene(const DataMatrix& table);

} // namespace suite
