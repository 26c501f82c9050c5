#include "brvUtils/geometry/Positions.h"

#include "brvUtils/geometry/Angles.h"
#include "brvUtils/geometry/internal/Constants.h"

#include <cmath>

namespace brvUtils {

brv::Vector3 offsetPosition(brv::Vector3 a, brv::Vector3 b, double offset)
{
    const double distance = norm(a - b);
    if (distance < tolerance) {
        return a;
    }
    return {a.x + (a.y - b.y) * offset / distance, a.y + (b.x - a.x) * offset / distance, a.z};
}

brv::Vector3 offsetGap(brv::Vector3& position, float heading, double gap)
{
    const float left = checkAngle(static_cast<float>(heading + pi / 2.0));
    const auto angle = static_cast<double>(left);
    return brv::Vector3(gap * std::cos(angle), gap * std::sin(angle), 0.0) + position;
}

} // namespace brvUtils
