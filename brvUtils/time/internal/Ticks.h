#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

/// \file
/// Arithmetic on counts of ticks that is defined for every count.
namespace brvUtils::internal {

/// Goes round where 64 bits end, as counters do.
inline long long addTicks(long long a, long long b)
{
    return static_cast<long long>(static_cast<std::uint64_t>(a) + static_cast<std::uint64_t>(b));
}

inline long long subtractTicks(long long a, long long b)
{
    return static_cast<long long>(static_cast<std::uint64_t>(a) - static_cast<std::uint64_t>(b));
}

/// Cut towards zero and to what fits; not a number gives 0.
inline long long wholeTicks(double ticks)
{
    using Limits = std::numeric_limits<long long>;
    if (std::isnan(ticks)) {
        return 0;
    }
    const double tooMany = 9223372036854775808.0; // 2^63
    return ticks >= tooMany ? Limits::max() : ticks < -tooMany ? Limits::min() : static_cast<long long>(ticks);
}

/// `ticks * unitsPerSecond / rate`, exact and cut towards zero also where the product does not fit; a quotient that does not
/// fit gives the greatest or least number. `unitsPerSecond` is positive, and `rate` not 0.
inline long long convertTicks(long long ticks, int unitsPerSecond, long long rate)
{
    const auto magnitude = [](long long value) {
        return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    };
    const bool isNegative = (ticks < 0) != (rate < 0);
    const std::uint64_t units = static_cast<std::uint64_t>(unitsPerSecond);
    const std::uint64_t divisor = magnitude(rate);
    const std::uint64_t seconds = magnitude(ticks) / divisor;
    const std::uint64_t rest = magnitude(ticks) % divisor;

    // rest * units / divisor, bit by bit from the top: `remainder` stays below the divisor, 2^63 at most.
    std::uint64_t part = 0;
    std::uint64_t remainder = 0;
    const auto carry = [&] {
        const bool isWhole = remainder >= divisor;
        remainder -= isWhole ? divisor : 0;
        part += isWhole ? 1 : 0;
    };
    for (std::uint64_t bit = std::uint64_t(1) << 31; bit != 0; bit >>= 1) {
        part *= 2;
        remainder *= 2;
        carry();
        remainder += (units & bit) != 0 ? rest : 0;
        carry();
    }

    using Limits = std::numeric_limits<long long>;
    const std::uint64_t most = static_cast<std::uint64_t>(Limits::max()) + (isNegative ? 1 : 0);
    if (seconds > (most - part) / units) {
        return isNegative ? Limits::min() : Limits::max();
    }
    const std::uint64_t result = seconds * units + part;
    return static_cast<long long>(isNegative ? 0 - result : result);
}

} // namespace brvUtils::internal
