#pragma once

#include "brvUtils/export.h"

#include <brv/Mark.h>

/// \file
/// Between the suite's own convention of coordinates (Velora) and another one (Orvik), and between poses and arrays of the six
/// numbers x, y, z, heading, pitch, roll. Metres and radians.

namespace brvUtils {

/// Fills the six numbers of a pose; note that a Mark itself has its angles in the opposite order.
BRVUTILS_API void copyXYZHPRFromMark(double out[6], brv::Mark m);

/// The pose of six numbers.
BRVUTILS_API void copyMarkFromXYZHPR(brv::Mark& m, const double in[6]);

/// The pose at (longitudinalOffset, 0, verticalOffset) in the frame of `in`, turned by half a turn about that frame's z axis.
BRVUTILS_API void FromVeloraToOrvik(brv::Mark in, brv::Mark& out, double longitudinalOffset, double verticalOffset);

/// The other way: undoes FromVeloraToOrvik of the same offsets.
BRVUTILS_API void FromOrvikToVelora(brv::Mark in, brv::Mark& out, double longitudinalOffset, double verticalOffset);

} // namespace brvUtils
