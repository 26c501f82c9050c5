#pragma once

#include <cmath>
#include <iosfwd>

#include <brv/export.h>

namespace brv {

/// A vector or a point of space.
struct Vector3
{
    /// Zero.
    constexpr Vector3() = default;

    /// These coordinates.
    constexpr Vector3(double xValue, double yValue, double zValue)
        : x(xValue)
        , y(yValue)
        , z(zValue)
    {
    }

    double x = 0.0; ///< First coordinate.
    double y = 0.0; ///< Second coordinate.
    double z = 0.0; ///< Third coordinate.
};

/// Whether all coordinates are the same.
constexpr bool operator==(const Vector3& a, const Vector3& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

/// Whether any coordinate differs.
constexpr bool operator!=(const Vector3& a, const Vector3& b)
{
    return !(a == b);
}

/// The sum.
constexpr Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

/// The way from `b` to `a`.
constexpr Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

/// The opposite.
constexpr Vector3 operator-(const Vector3& v)
{
    return {-v.x, -v.y, -v.z};
}

/// The vector, longer by a factor.
constexpr Vector3 operator*(double factor, const Vector3& v)
{
    return {factor * v.x, factor * v.y, factor * v.z};
}

/// The same with the factor behind.
constexpr Vector3 operator*(const Vector3& v, double factor)
{
    return factor * v;
}

/// The product of the lengths and the cosine between.
constexpr double dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// The length.
inline double norm(const Vector3& v)
{
    return std::sqrt(dot(v, v));
}

/// Three numbers with blanks between. What cannot be read fails the stream and leaves the vector as it is.
BRV_API std::istream& operator>>(std::istream& stream, Vector3& v);

/// Three numbers with a blank between, as the stream writes numbers.
BRV_API std::ostream& operator<<(std::ostream& stream, const Vector3& v);

} // namespace brv
