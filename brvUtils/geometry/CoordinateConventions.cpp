#include "brvUtils/geometry/CoordinateConventions.h"

#include "brvUtils/geometry/internal/Constants.h"

#include <brv/Transform.h>

#include <algorithm>
#include <iterator>

namespace brvUtils {

namespace {

/// The pose of a frame that is turned round at a place in the frame of `in`.
brv::Mark turnedRound(const brv::Mark& in, double longitudinalOffset, double verticalOffset)
{
    const brv::Mark offset(longitudinalOffset, 0.0, verticalOffset, 0.0, 0.0, pi);
    return (brv::Transform(in) * brv::Transform(offset)).toMark();
}

} // namespace

void copyXYZHPRFromMark(double out[6], brv::Mark m)
{
    const double values[] = {m.x, m.y, m.z, m.heading, m.pitch, m.roll};
    std::copy(std::begin(values), std::end(values), out);
}

void copyMarkFromXYZHPR(brv::Mark& m, const double in[6])
{
    m = {in[0], in[1], in[2], in[5], in[4], in[3]};
}

void FromVeloraToOrvik(brv::Mark in, brv::Mark& out, double longitudinalOffset, double verticalOffset)
{
    out = turnedRound(in, longitudinalOffset, verticalOffset);
}

void FromOrvikToVelora(brv::Mark in, brv::Mark& out, double longitudinalOffset, double verticalOffset)
{
    out = turnedRound(in, longitudinalOffset, -verticalOffset);
}

} // namespace brvUtils
