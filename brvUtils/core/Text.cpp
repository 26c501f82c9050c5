#include "brvUtils/core/Text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

namespace brvUtils {

std::string toupper(const std::string& text)
{
    std::string result = text;
    std::transform(result.begin(), result.end(), result.begin(),
        [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

std::string tolower(const std::string& text)
{
    std::string result = text;
    std::transform(result.begin(), result.end(), result.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool strCompareCI(const std::string& a, const std::string& b)
{
    return toupper(a) == toupper(b);
}

std::string float_to_string(float value, int decimals)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.*f", decimals, static_cast<double>(value));
    return text;
}

std::string byteSizeToString(std::uint64_t size)
{
    struct Unit {
        double bytes;
        const char* name;
    };
    const double kilo = 1024;
    const auto value = static_cast<double>(size);
    for (const Unit& unit : { Unit { kilo * kilo * kilo * kilo, "TB" }, Unit { kilo * kilo * kilo, "GB" }, Unit { kilo * kilo, "MB" } }) {
        if (value > unit.bytes) {
            char text[32];
            std::snprintf(text, sizeof text, "%.2f %s", value / unit.bytes, unit.name);
            return text;
        }
    }
    // Kept for callers: kilobytes have no decimals.
    return size <= 1024 ? std::to_string(size) + " B" : std::to_string(size / 1024) + " KB";
}

bool getBit(unsigned int value, unsigned int index)
{
    return ((value >> (index % 32)) & 1U) != 0;
}

void setBit(unsigned int& value, unsigned int index, bool on)
{
    const unsigned int bit = 1U << (index % 32);
    value = on ? value | bit : value & ~bit;
}

} // namespace brvUtils
