#pragma once

#include <cmath>
#include <iosfwd>

#include <brv/export.h>

namespace brv {

/// A vector or a point of space.
struct Vector3
{
    constexpr Vector3() = default;
    constexpr Vector3(double xValue, double yValue, double zValue)
        : x(xValue)
        , y(yValue)
        , z(zValue)
    {
    }

    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

constexpr bool operator==(const Vector3& a, const Vector3& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

constexpr bool operator!=(const Vector3& a, const Vector3& b)
{
    return !(a == b);
}

constexpr Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

constexpr Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

constexpr Vector3 operator-(const Vector3& v)
{
    return {-v.x, -v.y, -v.z};
}

constexpr Vector3 operator*(double factor, const Vector3& v)
{
    return {factor * v.x, factor * v.y, factor * v.z};
}

constexpr Vector3 operator*(const Vector3& v, double factor)
{
    return factor * v;
}

constexpr double dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline double norm(const Vector3& v)
{
    return std::sqrt(dot(v, v));
}

/// Three numbers with blanks between. What cannot be read fails the stream and leaves the vector as it is.
BRV_API std::istream& operator>>(std::istream& stream, Vector3& v);

/// Three numbers with a blank between, as the stream writes numbers.
BRV_API std::ostream& operator<<(std::ostream& stream, const Vector3& v);

} // namespace brv
