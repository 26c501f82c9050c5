#include "brvUtils/data/internal/CsvNumbers.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace brvUtils::csv {
namespace {

/// -1 for what is none.
int hexDigit(char c)
{
    const char small = static_cast<char>(c | 0x20);
    return isDigit(c) ? c - '0' : small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

/// mantissa x 2^exponent, rounded once, to even.
double rounded(std::uint64_t mantissa, std::int64_t exponent)
{
    constexpr std::int64_t precision = 53;
    constexpr std::int64_t leastExponent = -1074;
    std::int64_t bits = 0;
    while (bits < 64 && mantissa >> bits != 0) {
        ++bits;
    }
    const std::int64_t dropped = std::max(bits - precision, leastExponent - exponent);
    if (dropped > bits || bits == 0) {
        return 0.0;
    }
    if (dropped > 0) {
        const std::uint64_t half = std::uint64_t(1) << (dropped - 1);
        const std::uint64_t rest = mantissa & (half | (half - 1));
        mantissa >>= dropped;
        mantissa += rest > half || (rest == half && mantissa % 2 != 0);
        exponent += dropped;
    }
    return std::ldexp(static_cast<double>(mantissa), static_cast<int>(std::min<std::int64_t>(exponent, 2000)));
}

/// From behind "0x" on.
double parseHexadecimal(const char* p, const char* end)
{
    constexpr std::uint64_t full = std::uint64_t(1) << 58;
    std::uint64_t mantissa = 0;
    std::int64_t exponent = 0;
    bool anyDigit = false;
    bool anyRest = false;
    bool behindPoint = false;
    for (; p != end; ++p) {
        const int digit = hexDigit(*p);
        if (digit < 0 && (*p != '.' || behindPoint)) {
            break;
        }
        if (digit < 0) {
            behindPoint = true;
            continue;
        }
        anyDigit = true;
        if (mantissa < full) {
            mantissa = mantissa * 16 + static_cast<unsigned>(digit);
            exponent -= behindPoint ? 4 : 0;
        } else {
            anyRest = anyRest || digit != 0;
            exponent += behindPoint ? 0 : 4;
        }
    }
    if (anyDigit && end - p > 1 && (*p | 0x20) == 'p') {
        const bool negative = *++p == '-';
        p += negative || *p == '+';
        std::int64_t written = 0;
        for (; p != end && isDigit(*p); ++p) {
            written = std::min<std::int64_t>(written * 10 + (*p - '0'), std::int64_t(1) << 50);
        }
        exponent += negative ? -written : written;
    }
    return rounded(mantissa * 2 + anyRest, exponent - 1);
}

/// From behind "nan" on: "(payload)" of letters, digits and underlines may follow. It counts when it is a number.
double parseNan(const char* p, const char* end)
{
    std::uint64_t bits = 0x7ff8000000000000;
    if (p != end && *p == '(') {
        const char* last = ++p;
        while (last != end && (isDigit(*last) || *last == '_' || ((*last | 0x20) >= 'a' && (*last | 0x20) <= 'z'))) {
            ++last;
        }
        if (last != end && *last == ')') {
            const std::string payload(p, last);
            char* behind = nullptr;
            const std::uint64_t number = std::strtoull(payload.c_str(), &behind, 0);
            bits |= *behind == '\0' ? number & 0x0007ffffffffffff : 0;
        }
    }
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace

double parseSpecialDouble(const char* p, const char* end)
{
    if (beginsWithoutCase(p, end, "inf")) {
        return std::numeric_limits<double>::infinity();
    }
    return beginsWithoutCase(p, end, "nan") ? parseNan(p + 3, end) : parseHexadecimal(p + 2, end);
}

} // namespace brvUtils::csv
