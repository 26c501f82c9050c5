#pragma once

#include <cstdint>
#include <cstring>
#include <fast_float/fast_float.h>

// Fields and the numbers they begin with, by the rules of strtol and strtod. `end` is that of the field, or any place behind
// it when neither the separator nor what may follow it can be part of a number. Some load up to `overread` bytes behind
// `end`, without a look at them.

namespace brvUtils::csv {

constexpr std::size_t overread = 8;
constexpr std::uint64_t everyByte = 0x0101010101010101;

/// How many bytes are below the lowest one whose highest bit is set. Of the first character in memory, that is: little endian.
inline std::uint64_t bytesBelow(std::uint64_t flags)
{
    return (((((flags & (0 - flags)) - 1) >> 7) & everyByte) * everyByte) >> 56;
}

/// Where the field ends that p is in: at the separator or line feed, or at `end`.
inline const char* fieldEnd(const char* p, const char* end, char separator)
{
    const std::uint64_t separators = everyByte * static_cast<unsigned char>(separator);
    const std::uint64_t lineFeeds = everyByte * '\n';
    for (;; p += sizeof separators) {
        std::uint64_t bytes;
        std::memcpy(&bytes, p, sizeof bytes);
        const std::uint64_t a = bytes ^ separators;
        const std::uint64_t b = bytes ^ lineFeeds;
        const std::uint64_t found = (((a - everyByte) & ~a) | ((b - everyByte) & ~b)) & (everyByte * 0x80);
        const std::uint64_t passed = bytesBelow(found);
        if (found != 0 || end - p <= 8) {
            return static_cast<std::uint64_t>(end - p) < passed ? end : p + passed;
        }
    }
}

inline bool isDigit(char c)
{
    return static_cast<unsigned char>(c - '0') < 10;
}

/// What strtol and strtod pass over, but for the line feed, which ends a field anyway.
inline bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r' && c != '\n');
}

/// Behind the blanks and the sign; the separator may be a blank, and ends the field.
inline const char* numberStart(const char* p, const char* end, char separator, bool& negative)
{
    while (p != end && isBlank(*p) && *p != separator) {
        ++p;
    }
    negative = p != end && *p == '-';
    return p + (negative || (p != end && *p == '+'));
}

/// Whether strtol would take at least one character.
inline bool beginsInteger(const char* p, const char* end, char separator)
{
    bool negative = false;
    p = numberStart(p, end, separator, negative);
    return p != end && isDigit(*p);
}

inline bool beginsWithoutCase(const char* p, const char* end, const char (&word)[4])
{
    return end - p >= 3 && (p[0] | 0x20) == word[0] && (p[1] | 0x20) == word[1] && (p[2] | 0x20) == word[2];
}

/// Whether strtod would take at least one character.
inline bool beginsDouble(const char* p, const char* end, char separator)
{
    bool negative = false;
    p = numberStart(p, end, separator, negative);
    if (p == end) {
        return false;
    }
    return isDigit(*p) || (*p == '.' && end - p > 1 && isDigit(p[1])) || beginsWithoutCase(p, end, "inf") || beginsWithoutCase(p, end, "nan");
}

/// The value of the digits at the beginning of 8 bytes, and how many there are, without a branch on their number.
inline std::uint32_t leadingDigits(std::uint64_t bytes, std::uint64_t most, std::uint64_t& count)
{
    const std::uint64_t others = ((bytes + 0x4646464646464646) | (bytes - 0x3030303030303030)) & 0x8080808080808080;
    count = bytesBelow(others);
    count = count < most ? count : most;
    if (count == 0) {
        return 0;
    }
    std::uint64_t digits = (bytes & 0x0f0f0f0f0f0f0f0f) << (64 - 8 * count); // zeros lead
    digits = (digits * 10) + (digits >> 8);
    return static_cast<std::uint32_t>((((digits & 0x000000ff000000ff) * 0x000f424000000064) + (((digits >> 16) & 0x000000ff000000ff) * 0x0000271000000001)) >> 32);
}

/// The integer that strtol reads, clamped to 32 bits. \return behind it; null when there is none.
inline const char* parseInteger(const char* p, const char* end, char separator, std::int32_t& value)
{
    bool negative = false;
    if (p == end || !isDigit(*p)) {
        p = numberStart(p, end, separator, negative);
        if (p == end || !isDigit(*p)) {
            return nullptr;
        }
    }
    std::uint64_t bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    std::uint64_t count = 0;
    std::uint64_t magnitude = leadingDigits(bytes, static_cast<std::uint64_t>(end - p), count);
    p += count;
    if (count == sizeof bytes) {
        for (; p != end && isDigit(*p); ++p) {
            magnitude = magnitude < 1'000'000'000'000 ? magnitude * 10 + static_cast<std::uint64_t>(*p - '0') : magnitude;
        }
    }
    const std::uint64_t limit = negative ? 0x80000000u : 0x7fffffffu;
    const auto clamped = static_cast<std::int64_t>(magnitude < limit ? magnitude : limit);
    value = static_cast<std::int32_t>(negative ? -clamped : clamped);
    return p;
}

/// The magnitude of a hexadecimal number, of infinity or of NaN, from behind the sign on: what fast_float reads otherwise
/// than strtod. (The C libraries of Windows disagree on these among each other, and all depend on the locale.)
double parseSpecialDouble(const char* p, const char* end);

/// The double that strtod reads. \return behind it; null when there is none.
inline const char* parseDouble(const char* p, const char* end, char separator, double& value)
{
    bool negative = false;
    if (p == end || !isDigit(*p)) {
        p = numberStart(p, end, separator, negative);
        if (p == end) {
            return nullptr;
        }
        if (!isDigit(*p) && !(*p == '.' && end - p > 1 && isDigit(p[1]))) {
            end = fieldEnd(p, end, separator);
            if (!beginsWithoutCase(p, end, "inf") && !beginsWithoutCase(p, end, "nan")) {
                return nullptr;
            }
            value = parseSpecialDouble(p, end);
            value = negative ? -value : value;
            return end;
        }
    }
    const char* behind = fast_float::from_chars(p, end, value).ptr;
    if (behind != end && (*behind | 0x20) == 'x' && *behind != separator && behind - p == 1 && *p == '0') {
        behind = fieldEnd(p, end, separator);
        value = parseSpecialDouble(p, behind);
    }
    value = negative ? -value : value;
    return behind;
}

} // namespace brvUtils::csv
