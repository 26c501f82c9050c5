#pragma once

#include <algorithm>
#include <boost/core/bit.hpp>
#include <cstdint>
#include <cstring>
#include <fast_float/fast_float.h>

// Numbers at the beginning of fields, by the rules of strtol and strtod. Some functions load up to `overread` bytes behind the
// end of the field, without a look at them.

namespace brvUtils::csv {

constexpr std::size_t overread = 8;

inline bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

/// What strtol and strtod pass over.
inline bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Behind the blanks and the sign.
inline const char* numberStart(const char* p, const char* end, bool& negative)
{
    while (p != end && isBlank(*p)) {
        ++p;
    }
    negative = p != end && *p == '-';
    return p + (negative || (p != end && *p == '+'));
}

/// Whether strtol would take at least one character.
inline bool beginsInteger(const char* p, const char* end)
{
    bool negative = false;
    p = numberStart(p, end, negative);
    return p != end && isDigit(*p);
}

inline bool beginsWithoutCase(const char* p, const char* end, const char (&word)[4])
{
    return end - p >= 3 && (p[0] | 0x20) == word[0] && (p[1] | 0x20) == word[1] && (p[2] | 0x20) == word[2];
}

/// Whether strtod would take at least one character.
inline bool beginsDouble(const char* p, const char* end)
{
    bool negative = false;
    p = numberStart(p, end, negative);
    if (p == end) {
        return false;
    }
    return isDigit(*p) || (*p == '.' && end - p > 1 && isDigit(p[1])) || beginsWithoutCase(p, end, "inf") || beginsWithoutCase(p, end, "nan");
}

/// The value of the up to 8 digits that p begins with, and how many there are, without a branch on their number. No digit:
/// no value.
inline std::uint32_t leadingDigits(const char* p, const char* end, std::uint64_t& count)
{
    std::uint64_t bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    constexpr std::uint64_t every = 0x0101010101010101; // byte
    const std::uint64_t others = ((bytes + 0x46 * every) | (bytes - 0x30 * every)) & 0x80 * every;
    count = std::min(static_cast<std::uint64_t>(boost::core::countr_zero(others)) / 8, static_cast<std::uint64_t>(end - p)); // the first is lowest
    std::uint64_t digits = (bytes & 0x0f * every) << ((64 - 8 * count) & 63); // zeros lead
    digits = (digits * 10) + (digits >> 8);
    return static_cast<std::uint32_t>((((digits & 0x000000ff000000ff) * 0x000f424000000064) + (((digits >> 16) & 0x000000ff000000ff) * 0x0000271000000001)) >> 32);
}

/// Behind the sign, when digits follow at once; a minus is as likely as none, and costs no branch.
inline const char* skipSign(const char* p, const char* end, bool& negative)
{
    negative = *p == '-';
    const char* const digits = p + negative;
    return digits < end && isDigit(*digits) ? digits : numberStart(p, end, negative);
}

/// The integer that strtol reads, clamped to 32 bits. \return behind it; null when there is none.
inline const char* parseInteger(const char* p, const char* end, std::int32_t& value)
{
    bool negative = false;
    p = skipSign(p, end, negative);
    if (p == end || !isDigit(*p)) {
        return nullptr;
    }
    std::uint64_t count = 0;
    std::int64_t magnitude = leadingDigits(p, end, count);
    p += count;
    if (count == 8) {
        for (; p != end && isDigit(*p); ++p) {
            magnitude = magnitude < 1'000'000'000'000 ? magnitude * 10 + (*p - '0') : magnitude;
        }
        magnitude = std::min<std::int64_t>(magnitude, negative ? 0x80000000 : 0x7fffffff);
    }
    value = static_cast<std::int32_t>((magnitude ^ -std::int64_t(negative)) + negative); // the minus, without a branch
    return p;
}

constexpr double signs[] = {1.0, -1.0}; ///< A factor, where a branch would be foretold wrongly every other time.
constexpr double powersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

/// Numbers such as 12, 12.5 and 0.12345678901 that fill their field: digits as an integer that a double holds exactly, by a
/// power of ten that it holds exactly, give the nearest double. \return behind it; null when it is none of them.
inline const char* parseShortDouble(const char* p, const char* end, double& value)
{
    std::uint64_t count = 0;
    std::uint64_t digits = leadingDigits(p, end, count);
    p += count;
    if (count == 8 || p == end || *p != '.') {
        value = static_cast<double>(digits);
        return count < 8 && p == end ? p : nullptr;
    }
    std::uint64_t decimals = 0;
    const std::uint32_t fraction = leadingDigits(++p, end, decimals);
    p += decimals;
    if (decimals == 0) {
        return nullptr;
    }
    digits = digits * static_cast<std::uint64_t>(powersOfTen[decimals]) + fraction; // 15 digits at most
    if (decimals == 8 && p != end && isDigit(*p)) {
        std::uint64_t more = 0;
        const std::uint32_t rest = leadingDigits(p, end, more);
        if (count + decimals + more > 15) {
            return nullptr;
        }
        digits = digits * static_cast<std::uint64_t>(powersOfTen[more]) + rest;
        decimals += more;
        p += more;
    }
    value = static_cast<double>(digits) / powersOfTen[decimals];
    return p == end ? p : nullptr;
}

/// The magnitude of a hexadecimal number, of infinity or of NaN, from behind the sign on: what fast_float reads otherwise
/// than strtod. (The C libraries of Windows disagree on these among each other, and all depend on the locale.)
double parseSpecialDouble(const char* p, const char* end);

/// The double that strtod reads. \return behind it; null when there is none.
inline const char* parseDouble(const char* p, const char* end, double& value)
{
    bool negative = false;
    p = skipSign(p, end, negative);
    if (p == end) {
        return nullptr;
    }
    if (isDigit(*p)) {
        if (const char* behind = parseShortDouble(p, end, value)) {
            value *= signs[negative];
            return behind;
        }
    } else if (*p != '.' || end - p < 2 || !isDigit(p[1])) {
        if (!beginsWithoutCase(p, end, "inf") && !beginsWithoutCase(p, end, "nan")) {
            return nullptr;
        }
        value = parseSpecialDouble(p, end);
        value = negative ? -value : value; // NaN has a sign, too
        return end;
    }
    const char* behind = fast_float::from_chars(p, end, value).ptr;
    if (behind != end && (*behind | 0x20) == 'x' && behind - p == 1 && *p == '0') {
        value = parseSpecialDouble(p, end);
        behind = end;
    }
    value *= signs[negative];
    return behind;
}

} // namespace brvUtils::csv
