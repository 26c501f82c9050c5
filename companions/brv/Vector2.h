#pragma once

#include <cmath>

namespace brv {

/// A vector or a point of the plane.
struct Vector2
{
    /// Zero.
    constexpr Vector2() = default;

    /// These coordinates.
    constexpr Vector2(double xValue, double yValue)
        : x(xValue)
        , y(yValue)
    {
    }

    double x = 0.0; ///< First coordinate.
    double y = 0.0; ///< Second coordinate.
};

/// Whether all coordinates are the same.
constexpr bool operator==(const Vector2& a, const Vector2& b)
{
    return a.x == b.x && a.y == b.y;
}

/// Whether any coordinate differs.
constexpr bool operator!=(const Vector2& a, const Vector2& b)
{
    return !(a == b);
}

/// The sum.
constexpr Vector2 operator+(const Vector2& a, const Vector2& b)
{
    return {a.x + b.x, a.y + b.y};
}

/// The way from `b` to `a`.
constexpr Vector2 operator-(const Vector2& a, const Vector2& b)
{
    return {a.x - b.x, a.y - b.y};
}

/// The opposite.
constexpr Vector2 operator-(const Vector2& v)
{
    return {-v.x, -v.y};
}

/// The vector, longer by a factor.
constexpr Vector2 operator*(double factor, const Vector2& v)
{
    return {factor * v.x, factor * v.y};
}

/// The same with the factor behind.
constexpr Vector2 operator*(const Vector2& v, double factor)
{
    return factor * v;
}

/// The product of the lengths and the cosine between.
constexpr double dot(const Vector2& a, const Vector2& b)
{
    return a.x * b.x + a.y * b.y;
}

/// Positive when `b` is to the left of `a`.
constexpr double cross(const Vector2& a, const Vector2& b)
{
    return a.x * b.y - a.y * b.x;
}

/// The length.
inline double norm(const Vector2& v)
{
    return std::sqrt(dot(v, v));
}

/// The vector of length 1 in the direction of `v`; zero when `v` is.
inline Vector2 normalise(const Vector2& v)
{
    const double length = norm(v);
    return length > 0.0 ? Vector2(v.x / length, v.y / length) : Vector2();
}

} // namespace brv
