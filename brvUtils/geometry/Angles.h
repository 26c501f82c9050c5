#pragma once

#include "brvUtils/export.h"

/// \file
/// Angles in radians. They are wrapped in steps of the single-precision 2 pi (6.2831855), as all programs of the suite do, so
/// that the same angle is the same float everywhere. Infinity and NaN come back as they are.

namespace brvUtils {

/// The angle within (-pi, pi], as far as floats go: the largest result is 3.1415927, a little above pi. Up to 1,000 turns it is
/// what step after step gives, to the last bit; beyond, the remainder in double precision.
BRVUTILS_API float checkAngle(float angle);

/// The angle within [0, 2 pi): that of checkAngle, one turn further where it is negative. One just below 0 may be rounded up to
/// the whole turn of 6.2831855.
BRVUTILS_API float checkAngle02PI(float angle);

/// How far two directions are apart, 0 to pi.
BRVUTILS_API float diffAngleNotOriented(float a, float b);

/// The mean of two headings on the shorter arc, wrapped as by checkAngle. Equal weights bisect it; a `weightB` of 0 gives `a`;
/// two weights whose sum is 0, NaN.
BRVUTILS_API float medianAngle(float a, float b, float weightA, float weightB);

/// The value if it is finite, otherwise 0.
BRVUTILS_API float isFloat(float value);

/// The same in double precision.
BRVUTILS_API double isDouble(double value);

} // namespace brvUtils
