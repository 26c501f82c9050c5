#include "brvUtils/geometry/Angles.h"

#include "brvUtils/geometry/internal/Constants.h"

#include <algorithm>
#include <cmath>

namespace brvUtils {

namespace {

constexpr float turn = 6.2831855f; // the steps of wrapping; limits are compared in double precision
constexpr float longestWalk = 1000.0f * turn; // step by step

} // namespace

float checkAngle(float angle)
{
    if (!std::isfinite(angle)) {
        return angle;
    }
    if (std::fabs(angle) > longestWalk) {
        angle = static_cast<float>(std::remainder(static_cast<double>(angle), 2.0 * pi));
    }
    while (angle > pi) {
        angle -= turn;
    }
    while (angle <= -pi) {
        angle += turn;
    }
    return angle;
}

float checkAngle02PI(float angle)
{
    const float wrapped = checkAngle(angle);
    return wrapped < 0.0f ? wrapped + turn : wrapped;
}

float diffAngleNotOriented(float a, float b)
{
    const double difference = std::fabs(checkAngle02PI(a) - checkAngle02PI(b));
    return static_cast<float>(difference > pi ? std::max(2.0 * pi - difference, 0.0) : difference);
}

float medianAngle(float a, float b, float weightA, float weightB)
{
    const float difference = checkAngle(b - a);
    return checkAngle(a + difference * weightB / (weightA + weightB));
}

float isFloat(float value)
{
    return std::isfinite(value) ? value : 0.0f;
}

double isDouble(double value)
{
    return std::isfinite(value) ? value : 0.0;
}

} // namespace brvUtils
