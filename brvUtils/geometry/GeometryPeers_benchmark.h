#pragma once

#include <Eigen/Geometry>
#include <algorithm>
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/segment.hpp>
#include <cmath>
#include <vector>

// The same work done as users of these libraries do it. All of it is inline, as in their own programs.

namespace geometryBenchmark {

using Eigen::Vector2d;
using Eigen::Vector3d;
using BoostPoint = boost::geometry::model::d2::point_xy<double>;
using BoostSegment = boost::geometry::model::segment<BoostPoint>;

inline double cross(const Vector2d& a, const Vector2d& b)
{
    return a.x() * b.y() - a.y() * b.x();
}

inline bool intersection(Vector2d& result, const Vector2d& a0, const Vector2d& b0, const Vector2d& a1, const Vector2d& b1, double& sA, double& sB)
{
    const Vector2d alongA = a1 - a0;
    const Vector2d alongB = b1 - b0;
    const Vector2d between = b0 - a0;
    const double den = cross(alongA, alongB);
    if (std::fabs(den) < 1e-6) {
        return false;
    }
    sA = cross(between, alongB) / den;
    sB = cross(between, alongA) / den;
    if (sA < 0.0 || sA > 1.0 || sB < 0.0 || sB > 1.0) {
        return false;
    }
    result = a0 + sA * alongA;
    return true;
}

inline float squareDistance(Vector2d& between, const Vector2d& p1, const Vector2d& q1, const Vector2d& p2, const Vector2d& q2)
{
    const Vector2d d1 = q1 - p1;
    const Vector2d d2 = q2 - p2;
    const Vector2d r = p1 - p2;
    const auto a = static_cast<float>(d1.squaredNorm());
    const auto b = static_cast<float>(d1.dot(d2));
    const auto e = static_cast<float>(d2.squaredNorm());
    const auto c = static_cast<float>(d1.dot(r));
    const auto f = static_cast<float>(d2.dot(r));
    const float det = a * e - b * b;
    float s = det < 1e-6f ? 0.0f : std::clamp((b * f - c * e) / det, 0.0f, 1.0f);
    float t = e > 0.0f ? (b * s + f) / e : 0.0f;
    if (t < 0.0f || t > 1.0f) {
        t = std::clamp(t, 0.0f, 1.0f);
        s = a > 0.0f ? std::clamp((b * t - c) / a, 0.0f, 1.0f) : 0.0f;
    }
    between = r + static_cast<double>(s) * d1 - static_cast<double>(t) * d2;
    return static_cast<float>(between.squaredNorm());
}

inline void projection(const Vector2d& origin, const Vector2d& towards, const Vector2d& p, double& abscissa, double& gap)
{
    const Vector2d direction = (towards - origin).normalized();
    const Vector2d w = p - origin;
    abscissa = direction.dot(w);
    gap = cross(direction, w);
}

/// Heading, pitch, roll.
inline Eigen::Quaterniond rotation(const Vector3d& angles)
{
    return Eigen::AngleAxisd(angles.x(), Vector3d::UnitZ()) * Eigen::AngleAxisd(angles.y(), Vector3d::UnitY())
        * Eigen::AngleAxisd(angles.z(), Vector3d::UnitX());
}

inline Vector3d rotated(const Vector3d& v, const Vector3d& angles)
{
    return rotation(angles) * v;
}

struct EigenPose
{
    Vector3d position;
    Vector3d angles;
};

/// A pose within others, the innermost first.
inline EigenPose absolutePlace(const EigenPose* poses, int count)
{
    Eigen::Isometry3d absolute = Eigen::Isometry3d::Identity();
    for (int i = count - 1; i >= 0; --i) {
        absolute = absolute * Eigen::Translation3d(poses[i].position) * rotation(poses[i].angles);
    }
    return {absolute.translation(), absolute.rotation().eulerAngles(2, 1, 0)};
}

inline bool boostIntersection(BoostPoint& result, const BoostSegment& a, const BoostSegment& b)
{
    std::vector<BoostPoint> points;
    boost::geometry::intersection(a, b, points);
    if (points.empty()) {
        return false;
    }
    result = points.front();
    return true;
}

} // namespace geometryBenchmark
