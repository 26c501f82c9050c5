#include "brvUtils/geometry/Vectors.h"

#include <algorithm>
#include <cmath>

namespace brvUtils {

namespace {

/// The angle between two vectors without its sign.
double angleBetween(const brv::Vector2& u, const brv::Vector2& v)
{
    const double lengths = norm(u) * norm(v);
    return lengths == 0.0 ? 0.0 : std::acos(std::clamp(dot(u, v) / lengths, -1.0, 1.0));
}

/// A rotation by heading, pitch and roll, as sines and cosines.
struct Rotation
{
    explicit Rotation(const brv::Vector3& angles)
        : sh(std::sin(angles.x))
        , ch(std::cos(angles.x))
        , sp(std::sin(angles.y))
        , cp(std::cos(angles.y))
        , sr(std::sin(angles.z))
        , cr(std::cos(angles.z))
    {
    }

    double sh, ch, sp, cp, sr, cr;
};

} // namespace

double heading(brv::Vector2 v)
{
    return std::atan2(v.y, v.x);
}

double angleWith(brv::Vector2 apex, brv::Vector2 p, brv::Vector2 q)
{
    const brv::Vector2 u = p - apex;
    const brv::Vector2 v = q - apex;
    const double angle = angleBetween(u, v);
    return cross(u, v) < 0.0 ? -angle : angle;
}

double angleWithVector(brv::Vector2 a, brv::Vector2 b)
{
    const double angle = angleBetween(a, b);
    return cross(b, a) < 0.0 ? -angle : angle;
}

void rotateZ(brv::Vector2& v, double angle)
{
    const double s = std::sin(angle), c = std::cos(angle);
    v = {v.x * c - v.y * s, v.x * s + v.y * c};
}

void rotateZ(brv::Vector3& v, double angle)
{
    brv::Vector2 plane{v.x, v.y};
    rotateZ(plane, angle);
    v = {plane.x, plane.y, v.z};
}

void computeBisectriceAndNormal(brv::Vector2 u, brv::Vector2 v, brv::Vector2& bisectrice, brv::Vector2& normal)
{
    const brv::Vector2 direction = normalise(u + v);
    bisectrice = dot(direction, v) * direction;
    normal = v - bisectrice;
}

bool onCSide(brv::Vector2 a, brv::Vector2 b, brv::Vector2 c, brv::Vector2 p)
{
    brv::Vector2 bisectrice;
    brv::Vector2 normal;
    computeBisectriceAndNormal(normalise(a - b), normalise(c - b), bisectrice, normal);
    return dot(normal, p - b) >= 0.0;
}

brv::Vector3 applyAngles(brv::Vector3 v, brv::Vector3& angles)
{
    const auto [sh, ch, sp, cp, sr, cr] = Rotation(angles);
    return {cp * ch * v.x + (sp * ch * sr - cr * sh) * v.y + (sp * ch * cr + sr * sh) * v.z,
        cp * sh * v.x + (sp * sh * sr + cr * ch) * v.y + (sp * sh * cr - sr * ch) * v.z,
        -sp * v.x + cp * sr * v.y + cp * cr * v.z};
}

brv::Vector3 globalToLocal(brv::Vector3 v, brv::Vector3& angles)
{
    const auto [sh, ch, sp, cp, sr, cr] = Rotation(angles);
    return {cp * ch * v.x + cp * sh * v.y - sp * v.z,
        (sp * ch * sr - cr * sh) * v.x + (sp * sh * sr + cr * ch) * v.y + sr * cp * v.z,
        (sp * ch * cr + sr * sh) * v.x + (sp * sh * cr - sr * ch) * v.y + cr * cp * v.z};
}

} // namespace brvUtils
