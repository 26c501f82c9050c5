#include "brvUtils/os/VersionBlock.h"

#include "brvUtils/os/Encoding.h"
#include "brvUtils/os/LittleEndian.h"

#include <algorithm>

namespace brvUtils::os {
namespace {

constexpr std::size_t headSize = 6;

std::uint16_t number(const std::string& bytes, std::size_t place)
{
    return littleEndian<std::uint16_t>(bytes.data() + place);
}

std::size_t aligned(std::size_t place)
{
    return (place + 3) & ~std::size_t{3};
}

/// The characters up to a 0 or `end`. \param place moves behind them and the 0. False when there is no 0.
bool characters(const std::string& bytes, std::size_t& place, std::size_t end, std::wstring& text)
{
    for (; end - place >= 2; place += 2) {
        const std::uint16_t unit = number(bytes, place);
        if (unit == 0) {
            place += 2;
            return true;
        }
        text += static_cast<wchar_t>(unit);
    }
    return false;
}

bool isHigh(wchar_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLow(wchar_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// UTF-8 that is valid whatever the units are: a half of a pair alone, which may stand for a byte elsewhere, is replaced.
std::string utf8(std::wstring units)
{
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (isHigh(units[i]) && i + 1 < units.size() && isLow(units[i + 1])) {
            ++i;
        } else if (isHigh(units[i]) || isLow(units[i])) {
            units[i] = 0xFFFD;
        }
    }
    return utf8FromWide(units);
}

/// Small letters of Latin, Greek and Cyrillic ones; the same on every system and in every locale.
wchar_t lower(wchar_t c)
{
    const auto between = [c](wchar_t first, wchar_t last) { return c >= first && c <= last; };
    if (between('A', 'Z') || (between(0xC0, 0xDE) && c != 0xD7) || (between(0x391, 0x3A9) && c != 0x3A2) || between(0x410, 0x42F)) {
        return static_cast<wchar_t>(c + 32);
    }
    if (between(0x400, 0x40F)) {
        return static_cast<wchar_t>(c + 80);
    }
    if (c == 0x178) {
        return 0xFF;
    }
    const bool capitalsAreEven = (between(0x100, 0x137) && c != 0x130) || between(0x14A, 0x177);
    const bool capitalsAreOdd = between(0x139, 0x148) || between(0x179, 0x17E);
    return static_cast<wchar_t>((capitalsAreEven && c % 2 == 0) || (capitalsAreOdd && c % 2 == 1) ? c + 1 : c);
}

bool sameName(const std::wstring& one, const std::wstring& other)
{
    return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](wchar_t a, wchar_t b) { return lower(a) == lower(b); });
}

/// UTF-16 in wide characters of either width.
std::wstring units(const std::string& text)
{
    std::wstring result;
    for (const wchar_t c : wideFromUtf8(text)) {
        const auto code = static_cast<std::uint32_t>(c);
        if (code >= 0x10000) {
            result += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
            result += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace

VersionBlock::VersionBlock(const std::string& bytes, std::size_t begin, std::size_t end)
{
    if (end < begin || end - begin < headSize) {
        return;
    }
    const std::size_t size = number(bytes, begin);
    const bool isOfSystemsWith16Bits = number(bytes, begin + 4) > 1; // their blocks have no type, and names of bytes
    if (size < headSize || isOfSystemsWith16Bits) {
        return;
    }
    begin_ = begin;
    end_ = begin + std::min(size, end - begin);
    std::size_t place = begin + headSize;
    if (!characters(bytes, place, end_, name_)) {
        return;
    }
    valueBegin_ = std::min(aligned(place), end_);
    bytes_ = &bytes;
}

VersionBlock VersionBlock::root(const std::string& resource)
{
    return VersionBlock(resource, 0, resource.size());
}

VersionBlock VersionBlock::child(const std::string& name) const
{
    if (bytes_ == nullptr) {
        return {};
    }
    const std::wstring wanted = units(name);
    for (std::size_t place = aligned(valueBegin_ + valueSize()); place < end_ && end_ - place >= headSize;) {
        const VersionBlock block(*bytes_, place, end_);
        if (block && sameName(block.name_, wanted)) {
            return block;
        }
        const std::size_t size = number(*bytes_, place);
        if (size < headSize) {
            break;
        }
        place = aligned(place + size);
    }
    return {};
}

std::size_t VersionBlock::valueSize() const
{
    const std::size_t unit = number(*bytes_, begin_ + 4) == 1 ? 2 : 1;
    return std::min(number(*bytes_, begin_ + 2) * unit, end_ - valueBegin_);
}

std::string VersionBlock::value() const
{
    return bytes_ != nullptr ? bytes_->substr(valueBegin_, valueSize()) : std::string();
}

std::string VersionBlock::text() const
{
    std::wstring text;
    if (bytes_ != nullptr && valueSize() > 0) {
        std::size_t place = valueBegin_;
        characters(*bytes_, place, end_, text);
    }
    return utf8(text);
}

} // namespace brvUtils::os
